// The reader of exchange files, as the import uses it, and the writer behind it.

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "FuzzWorld.h"
#include "base/Conversions.h"

namespace {

/// No line that is longer can be read back.
constexpr std::size_t kLongestLine = 32767;

const std::string kImported = "Import Complete Successfully";

struct Counts {
  std::size_t profiles = 0;
  std::size_t mappings = 0;
  bool operator==(const Counts&) const = default;
};

std::vector<std::string_view> Lines(std::string_view bytes) {
  std::vector<std::string_view> lines;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    std::string_view line = bytes.substr(0, end);
    if (end < bytes.size() && line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return lines;
}

bool IsHeader(std::string_view line, std::string_view head) {
  line = base::TrimLeft(line);
  return line.starts_with(head) && line.size() > head.size() &&
         (line[head.size()] == ' ' || line[head.size()] == '>');
}

/// What a file holds, told by its lines alone, whatever their attributes say.
Counts CountsOf(std::string_view bytes) {
  Counts counts;
  bool inProfile = false;
  bool skipsLine = false;
  for (const std::string_view line : Lines(bytes)) {
    if (std::exchange(skipsLine, false)) continue;
    if (!inProfile) {
      inProfile = IsHeader(line, "<MapProfile");
      counts.profiles += inProfile;
    } else if (base::Trim(line) == "</MapProfile>") {
      inProfile = false;
    } else if (IsHeader(line, "<Mapping")) {
      ++counts.mappings;
      skipsLine = true;
    }
  }
  return counts;
}

Counts CountsOfList() {
  Counts counts;
  for (const auto& profile : g_Registry->ccMapProfiles()) {
    ++counts.profiles;
    counts.mappings += profile->ccMappings().Count();
  }
  return counts;
}

/// Every value of every profile and mapping that stands in a file.
std::vector<std::string> ValuesOfList() {
  std::vector<std::string> values;
  for (const auto& profile : g_Registry->ccMapProfiles()) {
    for (const std::string& text :
         {profile->sName, profile->sDescription, profile->sWindowTitle, profile->sWindowClass}) {
      values.push_back(text);
    }
    values.push_back(base::ToText(profile->bAutoActivate));
    values.push_back(base::ToText(profile->bEnabled));
    for (const auto& mapping : profile->ccMappings()) {
      values.push_back(mapping->sDescription());
      for (const std::int32_t number : {mapping->lBeginPort(), mapping->lEndPort(), mapping->Protocal(),
                                        std::int32_t{mapping->iForwardIPAddress()}}) {
        values.push_back(base::ToText(number));
      }
    }
  }
  return values;
}

std::vector<std::string> Keys() {
  std::vector<std::string> keys;
  for (const auto& profile : g_Registry->ccMapProfiles()) keys.push_back(profile->sKey());
  return keys;
}

void Empty() {
  for (const std::string& sKey : Keys()) g_Registry->RemoveMapProfile(sKey, nullptr);
}

std::string TakeMessage(fuzz::World& world) {
  fuzz::Require(world.toolkit.messages.size() == 1, "there is one message box");
  const ui::Message message = world.toolkit.messages.front();
  world.toolkit.messages.clear();
  fuzz::Require(message.title == "Harbourline" && message.icon == ui::MessageIcon::kInformation,
                "the message box is the one of a transfer");
  return message.text;
}

std::string Import(fuzz::World& world, std::string_view bytes) {
  world.folder.Write("profiles.prf", bytes);
  g_Registry->Import(world.folder.PathOf("profiles.prf"));
  std::string message = TakeMessage(world);
  fuzz::Require(message == kImported || message == "Unable to parse file" ||
                    message == "Some portions of the file could not be parsed.",
                "the import ends with one of its three texts");
  return message;
}

std::string ExportAll(fuzz::World& world) {
  g_Registry->ExportByKeys(world.folder.PathOf("profiles.prf"), Keys());
  fuzz::Require(TakeMessage(world) == "Export Complete Successfully", "the export tells that it is complete");
  return world.folder.Read("profiles.prf");
}

bool IsGreater(const std::string& left, const std::string& right) {
  return std::ranges::lexicographical_compare(right, left, [](char a, char b) {
    return static_cast<unsigned char>(a) < static_cast<unsigned char>(b);
  });
}

/// True when no two profiles have the same name. A number behind a taken name may itself be taken, so they
/// can.
bool NamesDiffer() {
  std::set<std::string> names;
  for (const auto& profile : g_Registry->ccMapProfiles()) names.insert(profile->sName);
  return names.size() == g_Registry->ccMapProfiles().Count();
}

void RequireOrder() {
  const CMapProfile* before = nullptr;
  for (const auto& profile : g_Registry->ccMapProfiles()) {
    fuzz::Require(!before || !IsGreater(before->sName, profile->sName), "the profiles stand in name order");
    before = profile.get();
  }
}

bool CanBeRead(std::string_view file) {
  return std::ranges::all_of(Lines(file), [](std::string_view line) { return line.size() <= kLongestLine; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzz::World world;
  world.Forget();
  Empty();
  const std::string_view bytes = fuzz::Text(data, size);
  Import(world, bytes);
  const Counts counts = CountsOf(bytes);
  fuzz::Require(CountsOfList() == counts, "each profile header and each mapping header of the file counts");
  RequireOrder();

  const std::vector<std::string> values = ValuesOfList();
  const bool namesDiffer = NamesDiffer();
  const std::string file = ExportAll(world);
  fuzz::Require(CountsOf(file) == counts, "the export holds every profile and mapping");
  Empty();
  const std::string message = Import(world, file);
  fuzz::Require(CountsOfList() == counts, "every profile and mapping of the export comes in");
  RequireOrder();
  if (CanBeRead(file)) {
    fuzz::Require(message == kImported, "an export is imported without a complaint");
    if (namesDiffer) {
      fuzz::Require(ValuesOfList() == values, "what was exported comes in as it was");
      fuzz::Require(ExportAll(world) == file, "and goes out as it did");
    }
  }

  Import(world, file);
  fuzz::Require(CountsOfList() == Counts{2 * counts.profiles, 2 * counts.mappings},
                "a second import doubles the profiles");
  RequireOrder();
  return 0;
}
