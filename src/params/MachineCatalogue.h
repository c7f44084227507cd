// The catalogue from which a machine's configuration begins: makers and models of machines,
// makers and models of controllers, and spindles, each a lookup from a number to its name. The
// numbers live only in memory; "Torvane.cnc" stores the names.
//
// A machine number's hundreds are its maker (number / 100 x 100 names the maker) and the rest
// the model's place in the list of models. The list holds more models than a hundred, so only
// the first 99 can be told apart by number; every model keeps its name all the same.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace isolith {

enum class CatalogueList {
  MachineMakers,     // by number / 100: "(Not listed)", "AeroFun", ...
  Machines,          // by number % 100: "No machine", "Unlisted model", ...
  ControllerMakers,  // by number / 100: "No CNC", "AeroFun", ...
  Controllers,       // by number % 100: "No CNC", "CNCfun", ...
  Spindles,          // by number: "No spindle", ...
};

// The names of a list, in catalogue order.
std::span<const char* const> CatalogueNames(CatalogueList list);

// Writes the name of `number` in `list` into `text`, or appends it when `append` is set, so that
// maker and model are built with two calls. A number outside the list writes nothing.
void CatalogueName(CatalogueList list, int number, std::string& text, bool append = false);

// "maker / model" of a machine (or controller) number, as "Torvane.cnc" stores it.
std::string MachineName(int number);
std::string ControllerName(int number);

// The number of a stored "maker / model" text, compared upper-cased; -1 when the catalogue has
// no such pair. A model past the 99th counts as its maker's number alone.
int MachineNumberOf(std::string_view name);
int ControllerNumberOf(std::string_view name);

}  // namespace isolith
