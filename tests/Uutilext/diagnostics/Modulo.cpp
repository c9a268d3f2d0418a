// A module needs no contents to be loaded.
