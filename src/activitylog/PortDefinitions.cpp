#include "activitylog/PortDefinitions.h"

#include <utility>

#include "base/Conversions.h"
#include "base/Error.h"
#include "base/TextFile.h"

void ReadPortDefinitions(const std::string& sFullPathName, PortDefinitions& ccPortDefinitions) {
  base::TextFileReader file(sFullPathName);
  while (!file.AtEnd()) {
    const double port = base::LeadingNumber(file.ReadLine());
    if (file.AtEnd()) return;
    const std::string_view description = file.ReadLine();
    try {
      CPortDefinition definition;
      definition.lPort = base::ToInt32(port);
      const std::string key = base::ToText(definition.lPort);
      if (ccPortDefinitions.Contains(key)) continue;
      definition.sDescription = description;
      ccPortDefinitions.Add(std::move(definition), key);
    } catch (const base::Error&) {
      // No port has such a number.
    }
  }
}
