#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Failures.h"
#include "base/KeyedCollection.h"
#include "base/NameIndex.h"
#include "model/CMapProfile.h"
#include "platform/LateBoundObject.h"

namespace ui {
class ComboBox;
class ListView;
}  // namespace ui

/// The state of the program: the known routers and the selected one, the profiles, and the user's settings.
/// It is loaded when the object is made and saved when the object is let go. Changes stay in memory until
/// then.
class CRegistry {
 public:
  using Routers = base::KeyedCollection<platform::LateBoundRef>;
  using MapProfiles = base::KeyedCollection<std::shared_ptr<CMapProfile>>;

  /// Where everything lies in the settings store.
  static constexpr std::string_view kApplication = "Harbourline";
  static constexpr std::string_view kSection = "RouterSection";

  /// Loads everything. Fails when a stored value can't be converted, with a text that tells which and where
  /// it lies; nothing is saved then.
  CRegistry();
  /// Releases as Release does, but swallows what fails.
  ~CRegistry();
  CRegistry(const CRegistry&) = delete;
  CRegistry& operator=(const CRegistry&) = delete;

  /// The end of the object's work: saves, then lets go of the selected router, of all routers and of the
  /// profiles. A failure of the save goes to the caller after that. Further calls do nothing.
  void Release();

  /// Key of the page last chosen in the tree.
  std::string LastMenuLocation;
  /// The selected router, one of the list or none.
  platform::LateBoundRef Router;
  /// Selects by title; fails for a title that isn't in the list.
  void RouterTitle(std::string_view sRouterTitle);
  /// Folder of the executable.
  const std::string& InstallPath() const { return m_InstallPath; }
  /// The version that wrote the settings.
  const std::string& Version() const { return m_Version; }
  /// Start at logon. Only Save touches the machine's list of such programs.
  bool LoadOnStartup = true;
  bool ShowSplashOnStartup = true;
  /// 1 activity lights, 2 speed bar, 3 logo.
  std::int16_t TrayLights = 1;
  /// Sorted by name, by each profile's sKey. Profiles come and go by AddMapProfile and RemoveMapProfile
  /// alone.
  const MapProfiles& ccMapProfiles() const { return m_ccMapProfiles; }
  bool ExportProfiles = true;
  bool AutomaticActivation = false;
  bool FilterOutProfiles = false;
  bool RouterValid() const { return Router != nullptr; }

  /// Takes in the plug-ins that installers have announced since.
  void CheckForPlugIns();
  /// Rewrites the whole stored section and the logon entry. Neither a plug-in that fails meanwhile nor a
  /// value that can't be written keeps the rest from being stored; what failed is thrown when all is written.
  void Save();
  /// Makes a plug-in and adds it under its title. One that can't be made, whose title can't be read or is
  /// taken, is left out silently.
  void AddRouter(const std::string& sClass);
  /// The only way in for a profile: gives it a number when its name is taken, and its place in the order of
  /// names. `lv`, if any, gets a row for it. A name that changes later counts from the next AddMapProfile on.
  void AddMapProfile(const std::shared_ptr<CMapProfile>& MapProfile, ui::ListView* lv);
  /// Fills the list with the profiles, or, with `bAutoOnly`, with those that follow a program and marks
  /// active ones.
  void PopulateMapProfileListView(ui::ListView& lv, bool bAutoOnly) const;
  /// Takes the profile, and its row in `lv` if any, away; what isn't there is ignored.
  void RemoveMapProfile(std::string_view sKey, ui::ListView* lv);
  /// Fills the control with the titles; choosing the selected router's raises the control's Click. What fails
  /// in a plug-in, or in a handler of Click, is thrown when the list is whole.
  void PopulateRouterList(ui::ComboBox& cb) const;
  /// Fails for a title that isn't in the list. The case of letters doesn't count.
  platform::LateBoundRef GetRouterByTitle(std::string_view sRouterTitle) const;
  /// The first of that class; null when there is none.
  platform::LateBoundRef GetRouterByClass(std::string_view sClassName) const;
  /// Fails for an unknown key.
  std::shared_ptr<CMapProfile> GetMapProfileByKey(std::string_view sKey) const;
  /// Writes the profiles to an exchange file and tells the user. A file that can't be opened is told too; any
  /// other failure goes to the caller.
  void ExportByKeys(const std::string& sFullPathName, std::span<const std::string> sProfileKeys);
  /// Adds the profiles of an exchange file and tells the user how it went, in the same way.
  void Import(const std::string& sFullPathName);
  void m_TemporaryProfile_ErrorOccured(const std::string& sErrorMessage);
  /// Sends what all profiles want to the router in one call and brings their marks up to date before.
  /// `iLocalIP` is the last octet of this computer's address. `bSuccess` is what the plug-in answers: true is
  /// failure.
  void ActivatePortForwarding(std::int16_t iLocalIP, bool bReset, bool& bSuccess);

 private:
  /// Titles that give the same text are the same title.
  static std::string FoldTitle(std::string_view sTitle);
  void Load();
  void LoadRouters();
  void LoadMapProfiles();
  void SaveRouters(base::Failures& failures) const;
  void SaveMapProfiles(base::Failures& failures) const;
  /// Adds the routers that installers have announced; the keys of the values that announced them.
  std::vector<std::string> TakeInPlugIns();
  void Forget(const std::vector<std::string>& waiting);
  /// What the plug-in returns, or what it returned when it was added where that fails.
  std::string TitleOf(const platform::LateBoundRef& router, base::Failures& failures) const;
  /// What the plug-in returns, or the class that it was made of where that fails.
  std::string ClassOf(const platform::LateBoundRef& router, base::Failures& failures) const;
  std::string NumberedName(const std::string& sName) const;
  void AddMapProfileListItem(ui::ListView& lv, const CMapProfile& MapProfile, bool bShowActive) const;
  void JudgeMapping(std::int16_t iLocalIP, bool bReset, const CMapProfile& MapProfile,
                    const CMapping& Mapping, std::int32_t& iVerdict) const;
  /// Puts another profile, or none, in the place of the one that is being imported.
  void TemporaryProfile(std::shared_ptr<CMapProfile> MapProfile);

  /// By title.
  Routers m_ccRouters{&FoldTitle};
  /// For a plug-in that fails to name itself later.
  struct RouterOrigin {
    std::string sClass;
    std::string sTitle;
  };
  std::map<platform::LateBoundRef, RouterOrigin> m_RouterOrigins;
  MapProfiles m_ccMapProfiles;
  /// The names under which the profiles stand in m_ccMapProfiles, in the same order.
  base::NameIndex m_MapProfileNames;
  std::string m_InstallPath;
  std::string m_Version;
  /// What the end of an export or import tells the user.
  std::string sTransferMessage;
  std::shared_ptr<CMapProfile> m_TemporaryProfile;
  bool m_bReleased = false;
};

/// The one state of the program. The main window makes it first and releases it last.
extern std::unique_ptr<CRegistry> g_Registry;
