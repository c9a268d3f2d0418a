#include "framework/Xml.h"

#include <pugixml.hpp>

namespace vel::xml {

std::u16string_view Descripcion(int estado) noexcept {
  switch (estado) {
    case pugi::status_out_of_memory:
      return u"no hay suficiente memoria";
    case pugi::status_unrecognized_tag:
      return u"hay una etiqueta irreconocible";
    case pugi::status_bad_pi:
      return u"hay una instrucción o declaración mal formada";
    case pugi::status_bad_comment:
      return u"hay un comentario mal formado";
    case pugi::status_bad_cdata:
      return u"hay una sección CDATA mal formada";
    case pugi::status_bad_doctype:
      return u"el tipo de documento está mal formado";
    case pugi::status_bad_pcdata:
      return u"hay texto mal formado";
    case pugi::status_bad_start_element:
      return u"una etiqueta de inicio está mal formada";
    case pugi::status_bad_attribute:
      return u"un atributo está mal formado";
    case pugi::status_bad_end_element:
      return u"una etiqueta de fin está mal formada";
    case pugi::status_end_element_mismatch:
      return u"una etiqueta de fin no corresponde a la de inicio";
    case pugi::status_no_document_element:
      return u"no tiene elementos";
    default:
      return u"no se puede leer";
  }
}

}  // namespace vel::xml
