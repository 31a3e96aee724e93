// The reader of "Ports.dat".

#include <algorithm>

#include "FuzzWorld.h"
#include "activitylog/PortDefinitions.h"
#include "base/Conversions.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::World world;
  world.folder.Write("Ports.dat", fuzz::Text(data, size));
  PortDefinitions definitions;
  ReadPortDefinitions(world.folder.PathOf("Ports.dat"), definitions);

  const auto lines = static_cast<std::size_t>(std::count(data, data + size, '\n')) + 1;
  fuzz::Require(definitions.Count() <= lines / 2, "a definition has two lines");
  for (const CPortDefinition& definition : definitions) {
    const CPortDefinition* const found = definitions.TryGet(base::ToText(definition.lPort));
    fuzz::Require(found == &definition, "a definition is found by its port");
    fuzz::Require(definition.sDescription.find('\n') == std::string::npos, "a description is one line");
  }
  return 0;
}
