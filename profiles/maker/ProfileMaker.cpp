// profile_maker SOURCES WARNINGS FOLDER
//   writes the profiles of the table SOURCES into FOLDER: a file for each of them, and one for each category.
// profile_maker --read FILE...
//   imports each file and prints what came in, one line a file, a profile and a mapping, fields parted by
//   tabs:
//     file, path, message; profile, name, description, window title, window class, follows a program, is on;
//     mapping, description, first port, last port, protocols, last octet of the target
// Both go through the program's own export and import, so that what is handed out is what the program writes.

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/Conversions.h"
#include "base/TextFile.h"
#include "settings/CRegistry.h"
#include "support/World.h"

namespace {

constexpr std::int16_t kThisComputer = -1;

/// A line of comma-separated values; a field in quotes may hold commas, and a quote as two of them.
std::vector<std::string> Fields(std::string_view line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"' && quoted && line.substr(i + 1).starts_with('"')) {
      fields.back() += line[i++];
    } else if (line[i] == '"') {
      quoted = !quoted;
    } else if (line[i] == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += line[i];
    }
  }
  return fields;
}

std::vector<std::string> Parts(std::string_view list) {
  constexpr std::string_view kSeparator = "; ";
  std::vector<std::string> parts;
  for (;;) {
    const std::size_t end = list.find(kSeparator);
    parts.emplace_back(list.substr(0, end));
    if (end == list.npos) return parts;
    list.remove_prefix(end + kSeparator.size());
  }
}

/// The rows of a table by the names of its columns.
std::vector<std::map<std::string, std::string>> ReadTable(const std::string& path) {
  base::TextFileReader file(path);
  std::vector<std::string> columns;
  std::vector<std::map<std::string, std::string>> rows;
  while (!file.AtEnd()) {
    std::vector<std::string> fields = Fields(file.ReadLine());
    if (columns.empty()) {
      columns = std::move(fields);
      continue;
    }
    if (fields.size() != columns.size())
      throw std::runtime_error(path + ": " + fields[0] + ": its columns don't fit");
    auto& row = rows.emplace_back();
    for (std::size_t i = 0; i < columns.size(); ++i) row[columns[i]] = std::move(fields[i]);
  }
  return rows;
}

std::int32_t ProtocalOf(std::string_view protocol) {
  if (protocol == "TCP") return 0;
  if (protocol == "UDP") return 1;
  if (protocol == "TCP+UDP") return 2;
  throw std::runtime_error("there is no protocol " + std::string(protocol));
}

std::shared_ptr<CMapping> MappingOf(std::string_view ports, std::string_view protocol, std::string use) {
  auto mapping = std::make_shared<CMapping>();
  mapping->sDescription(std::move(use));
  const std::size_t dash = ports.find('-');
  mapping->lBeginPort(base::ToInt32(ports.substr(0, dash)));
  mapping->lEndPort(base::ToInt32(dash == ports.npos ? ports : ports.substr(dash + 1)));
  mapping->Protocal(ProtocalOf(protocol));
  mapping->iForwardIPAddress(kThisComputer);
  return mapping;
}

std::shared_ptr<CMapProfile> ProfileOf(std::map<std::string, std::string>& row,
                                       const std::map<std::string, std::string>& warnings) {
  auto profile = std::make_shared<CMapProfile>();
  profile->sName = row["name"];
  profile->sDescription = row["description"];
  if (const std::string& warning = row["warning"]; !warning.empty()) {
    profile->sDescription += " " + warnings.at(warning);
  }
  const auto ports = Parts(row["ports"]);
  const auto protocols = Parts(row["protocol"]);
  const auto uses = Parts(row["uses"]);
  if (ports.size() != protocols.size() || ports.size() != uses.size()) {
    throw std::runtime_error(profile->sName + ": ports, protocols and uses don't fit");
  }
  for (std::size_t i = 0; i < ports.size(); ++i) {
    profile->AddMapping(MappingOf(ports[i], protocols[i], uses[i]));
  }
  return profile;
}

/// The world in memory with the program's state, which is empty.
class Program : public support::World {
 public:
  Program() { g_Registry = std::make_unique<CRegistry>(); }
  ~Program() { g_Registry.reset(); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The text of the one message box since the last call.
  std::string TakeMessage() {
    if (toolkit.messages.size() != 1) throw std::runtime_error("there was no message, or more than one");
    std::string text = toolkit.messages.front().text;
    toolkit.messages.clear();
    return text;
  }
  void Export(const std::string& path, std::span<const std::string> keys) {
    g_Registry->ExportByKeys(path, keys);
    if (const std::string text = TakeMessage(); text != "Export Complete Successfully") {
      throw std::runtime_error(path + ": " + text);
    }
  }
};

void Write(const std::string& sources, const std::string& warningTable, const std::string& folder) {
  std::map<std::string, std::string> warnings;
  for (auto& row : ReadTable(warningTable)) warnings[row["warning"]] = row["text"];
  Program program;
  std::map<std::string, std::string> categories;
  for (auto& row : ReadTable(sources)) {
    const auto profile = ProfileOf(row, warnings);
    g_Registry->AddMapProfile(profile, nullptr);
    categories[profile->sKey()] = row["category"];
  }
  // In the order of the list, which is that of the names.
  std::map<std::string, std::vector<std::string>> keys;
  for (const auto& profile : g_Registry->ccMapProfiles()) {
    program.Export(folder + "/" + profile->sName + ".prf", std::span(&profile->sKey(), 1));
    keys[categories[profile->sKey()]].push_back(profile->sKey());
  }
  for (const auto& [category, members] : keys) {
    std::string file = folder;
    file.append("/All ").append(category).append(".prf");
    program.Export(file, members);
  }
}

void Read(const std::string& path) {
  Program program;
  g_Registry->Import(path);
  std::cout << "file\t" << path << '\t' << program.TakeMessage() << '\n';
  for (const auto& profile : g_Registry->ccMapProfiles()) {
    std::cout << "profile\t" << profile->sName << '\t' << profile->sDescription << '\t'
              << profile->sWindowTitle << '\t' << profile->sWindowClass << '\t'
              << base::ToText(profile->bAutoActivate) << '\t' << base::ToText(profile->bEnabled) << '\n';
    for (const auto& mapping : profile->ccMappings()) {
      std::cout << "mapping\t" << mapping->sDescription() << '\t' << mapping->lBeginPort() << '\t'
                << mapping->lEndPort() << '\t' << mapping->sType() << '\t' << mapping->iForwardIPAddress()
                << '\n';
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  try {
    if (words.size() > 1 && words[0] == "--read") {
      std::ranges::for_each(std::span(words).subspan(1), Read);
    } else if (words.size() == 3) {
      Write(words[0], words[1], words[2]);
    } else {
      std::cerr << "profile_maker SOURCES WARNINGS FOLDER, or profile_maker --read FILE...\n";
      return 2;
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
  return 0;
}
