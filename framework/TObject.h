#pragma once

#include "utilvel90_export.h"

namespace vel {

/// Base of what a string list can own beside its texts.
/// Threads: one at a time, unless its class says otherwise.
class UTILVEL90_EXPORT TObject {
 public:
  TObject() = default;
  TObject(const TObject&) = default;
  TObject(TObject&&) = default;
  TObject& operator=(const TObject&) = default;
  TObject& operator=(TObject&&) = default;
  virtual ~TObject() = default;
};

}  // namespace vel
