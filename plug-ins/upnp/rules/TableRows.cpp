#include "rules/TableRows.h"

#include <algorithm>

#include "rules/Wish.h"

namespace upnp {

namespace {

std::string WhoseIs(const PortMapping& mapping, const std::string& localAddress) {
  const bool here = mapping.client == localAddress;
  if (BearsOurMark(mapping.description)) return here ? "Harbourline" : "Harbourline, for another computer";
  return here ? "Another program on this computer" : "Another computer";
}

}  // namespace

std::vector<TableRow> DescribeTable(std::vector<PortMapping> entries, const std::string& localAddress) {
  std::stable_sort(entries.begin(), entries.end(),
                   [](const PortMapping& a, const PortMapping& b) { return a.Key() < b.Key(); });
  std::vector<TableRow> rows;
  for (const PortMapping& mapping : entries) {
    TableRow row;
    row.port = (mapping.protocol == Protocol::kTcp ? "TCP " : "UDP ") + std::to_string(mapping.externalPort);
    row.whose = WhoseIs(mapping, localAddress);
    row.target = mapping.client + ":" + std::to_string(mapping.internalPort);
    row.description = mapping.description;
    if (!mapping.enabled) row.description += " (switched off)";
    if (!mapping.remoteHost.empty()) row.description += " (only from " + mapping.remoteHost + ")";
    row.lease = mapping.lease;
    rows.push_back(row);
  }
  return rows;
}

}  // namespace upnp
