// The load of the program's state from whatever the settings store holds. The input is lines of a name, "="
// and a value.

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "FuzzWorld.h"
#include "base/Conversions.h"
#include "base/Error.h"
#include "plugins/modServerHelper.h"

namespace {

using Values = std::map<std::string, std::string>;

/// More profiles or mappings than that teach nothing new and take long.
constexpr std::int32_t kMost = 500;

struct StateWorld : fuzz::World {
  StateWorld() {
    for (const char* const title : {"A", "B", "C"}) {
      plugIns.push_back(objects.AddPlugIn(std::string(title) + ".Router", title));
    }
  }
  void Forget() {
    fuzz::World::Forget();
    for (const auto& plugIn : plugIns) plugIn->calls.clear();
  }

  std::vector<std::shared_ptr<support::Script>> plugIns;
};

Values Read(std::string_view text) {
  Values values;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    const std::size_t equals = line.find('=');
    if (equals != line.npos) values[std::string(line.substr(0, equals))] = line.substr(equals + 1);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return values;
}

std::int32_t CountIn(std::string_view value) {
  try {
    return base::ToInt16(value);
  } catch (const base::Error&) {
    return 0;
  }
}

bool IsTooMuch(const Values& values) {
  std::int32_t total = 0;
  for (const auto& [name, value] : values) {
    if (name.ends_with("Count") && name != "RouterCount") total += std::max(CountIn(value), 0);
  }
  return total > kMost;
}

/// What the failure says must be about a value that is stored.
void RequireNamed(const std::string& failure, const Values& values) {
  for (const auto& [name, value] : values) {
    if (failure.starts_with("The stored value \"" + name + "\" holds \"" + value + "\", which is ")) {
      fuzz::Require(failure.ends_with(" (HKEY_CURRENT_USER\\Software\\Harbourline\\RouterSection)."),
                    "a failure tells where the value lies");
      return;
    }
  }
  fuzz::Require(false, "a failure names a stored value");
}

/// Announced plug-ins are taken out of the store when they are taken in.
Values WithoutAnnouncements(Values values) {
  std::erase_if(values, [](const auto& value) { return value.first.starts_with("RouterPlugIn_"); });
  return values;
}

std::vector<std::string> ValuesOf(const CMapProfile& profile) {
  std::vector<std::string> values{profile.sName,
                                  profile.sDescription,
                                  profile.sWindowTitle,
                                  profile.sWindowClass,
                                  base::ToText(profile.bAutoActivate),
                                  base::ToText(profile.bEnabled)};
  for (const auto& mapping : profile.ccMappings()) {
    values.push_back(mapping->sDescription());
    for (const std::int32_t number : {mapping->lBeginPort(), mapping->lEndPort(), mapping->Protocal(),
                                      std::int32_t{mapping->iForwardIPAddress()}}) {
      values.push_back(base::ToText(number));
    }
  }
  return values;
}

/// All that a save keeps.
std::vector<std::string> ValuesOf(const CRegistry& state) {
  std::vector<std::string> values{state.LastMenuLocation,
                                  state.RouterValid() ? modServerHelper::ClassName(state.Router) : "",
                                  state.InstallPath(),
                                  base::ToText(state.LoadOnStartup),
                                  base::ToText(state.ShowSplashOnStartup),
                                  base::ToText(state.TrayLights),
                                  base::ToText(state.ExportProfiles),
                                  base::ToText(state.AutomaticActivation),
                                  base::ToText(state.FilterOutProfiles)};
  for (const auto& profile : state.ccMapProfiles()) {
    const std::vector<std::string> ofProfile = ValuesOf(*profile);
    values.insert(values.end(), ofProfile.begin(), ofProfile.end());
  }
  return values;
}

/// A number behind a taken name may itself be taken, and the next load then gives another.
bool NamesDiffer(const CRegistry& state) {
  std::set<std::string> names;
  for (const auto& profile : state.ccMapProfiles()) names.insert(profile->sName);
  return names.size() == state.ccMapProfiles().Count();
}

void Load(std::optional<CRegistry>& state, const Values& values, StateWorld& world) {
  world.settings.Values() = values;
  try {
    state.emplace();
  } catch (const base::Error& error) {
    RequireNamed(error.Text(), values);
    fuzz::Require(WithoutAnnouncements(world.settings.Values()) == WithoutAnnouncements(values),
                  "a load that fails leaves the store as it was");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static StateWorld world;
  world.Forget();
  const Values values = Read(fuzz::Text(data, size));
  if (IsTooMuch(values)) return 0;

  std::optional<CRegistry> first;
  Load(first, values, world);
  if (!first) return 0;
  const std::vector<std::string> state = ValuesOf(*first);
  const std::size_t profiles = first->ccMapProfiles().Count();
  const bool namesDiffer = NamesDiffer(*first);
  first->Release();
  const Values saved = world.settings.Values();

  std::optional<CRegistry> second;
  Load(second, saved, world);
  fuzz::Require(second.has_value(), "what was saved can be loaded");
  fuzz::Require(second->ccMapProfiles().Count() == profiles, "every profile is saved and loaded");
  if (namesDiffer) fuzz::Require(ValuesOf(*second) == state, "the state is loaded as it was saved");
  second->Release();
  if (namesDiffer) fuzz::Require(world.settings.Values() == saved, "and is saved as it was loaded");
  return 0;
}
