#include <algorithm>
#include <initializer_list>

#include "base/Error.h"
#include "base/Failures.h"
#include "settings/CRegistry.h"
#include "shell/frmMain.h"
#include "shell/modCommon.h"

namespace {

struct Category {
  std::string_view key;
  std::string_view caption;
  /// Empty for a group.
  std::string_view group;
};

constexpr Category kCategories[] = {
    {"PortForwardingGroup", "Port Forwarding", ""},
    {"PortForwardingProfiles", "Profiles", "PortForwardingGroup"},
    {"PortForwardingAuto", "Automatic", "PortForwardingGroup"},
    {"PortForwardingImport", "Import", "PortForwardingGroup"},
    {"PortForwardingExport", "Export", "PortForwardingGroup"},
    {"WindowsGroup", "Configuration", ""},
    {"RouterConfiguration", "Router", "WindowsGroup"},
    {"WindowsConfiguration", "Windows", "WindowsGroup"},
    {"Wizard", "Setup Wizard", "WindowsGroup"},
    {"LoggingGroup", "Activity Log", ""},
    {"LogConfiguration", "Log", "LoggingGroup"},
    {"RegisterGroup", "Harbourline", ""},
    {"About", "About", "RegisterGroup"},
    {"License", "License", "RegisterGroup"},
    {"Help", "Help", "RegisterGroup"},
};

constexpr std::string_view kFirstPage = "Help";
constexpr const char* kLicense = "License.rtf";
constexpr ui::Twips kTreeWidth = 2400;
constexpr ui::Twips kPictureWidth = 256 * 15;
constexpr ui::Twips kPictureHeight = 192 * 15;

constexpr std::int32_t kExport = 0;
constexpr std::int32_t kImport = 1;
/// The transfer page has one topic of its own for both ways; only the window tells them apart.
constexpr std::int32_t kTransferTopic = 7000;

}  // namespace

void frmMain::PopulateCategories(const std::string& sNodeKey) {
  tvCategories.Visible(false);
  tvCategories.Clear();
  std::string sKey = sNodeKey.empty() ? g_Registry->LastMenuLocation : sNodeKey;
  for (const Category& category : kCategories) {
    const bool bGroup = category.group.empty();
    tvCategories.AddNode({std::string(category.key), std::string(category.caption),
                          std::string(category.group), bGroup, bGroup,
                          bGroup ? modCommon::ColorTitle() : ui::kDefaultColor});
  }
  // The stored place may come from another version, whose tree had other nodes.
  if (!tvCategories.Contains(sKey)) sKey = kFirstPage;
  g_Registry->LastMenuLocation = sKey;
  tvCategories.SelectedKey(sKey);
  base::Failures failures;
  failures.Run([this] { tvCategories_NodeClick(); });
  tvCategories.Visible(true);
  failures.Rethrow();
}

void frmMain::tvCategories_NodeClick() {
  HidePages();
  HelpContextID(0);
  const std::string sKey = tvCategories.SelectedKey();
  if (sKey.empty()) return;
  g_Registry->LastMenuLocation = sKey;
  ShowPage(sKey);
  ShowText(sKey);
}

void frmMain::HidePages() {
  for (ui::Control* page : std::initializer_list<ui::Control*>{
           &imgChickens, &lblTitle, &rtGeneral, &ctlHelp_, &ctlSetupWizard_, &ctlAbout_, &ctlAutomatic_,
           &ctlRouterLog_, &ctlExport_, &ctlMapProfile_, &ctlWinStartup, &ctlRouter}) {
    page->Visible(false);
  }
}

void frmMain::ShowPage(std::string_view sNodeKey) {
  base::Failures failures;
  // A page that can't be filled shows what it has.
  const auto show = [&](ui::Control& page, std::int32_t topic, const auto& prepare) {
    HelpContextID(topic);
    failures.Run(prepare);
    page.Visible(true);
  };
  const auto nothing = [] {};
  if (sNodeKey == "WindowsConfiguration") {
    show(ctlWinStartup, 4000, nothing);
  } else if (sNodeKey == "RouterConfiguration") {
    show(ctlRouter, 2000, [this] { ctlRouter.Populate(); });
  } else if (sNodeKey == "PortForwardingProfiles") {
    show(ctlMapProfile_, 9000, [this] { ctlMapProfile_.Populate(); });
  } else if (sNodeKey == "PortForwardingExport" || sNodeKey == "PortForwardingImport") {
    const bool bExport = sNodeKey == "PortForwardingExport";
    ctlExport_.TransferType(bExport ? kExport : kImport);
    ctlExport_.HelpContextID(kTransferTopic);
    show(ctlExport_, bExport ? 7000 : 8000, [this] { ctlExport_.Populate(); });
  } else if (sNodeKey == "PortForwardingAuto") {
    show(ctlAutomatic_, 6000, [this] { ctlAutomatic_.Populate(); });
  } else if (sNodeKey == "LogConfiguration") {
    show(ctlRouterLog_, 1000, [this] { ctlRouterLog_.RefreshData(); });
  } else if (sNodeKey == "Wizard") {
    show(ctlSetupWizard_, 3000, nothing);
  }
  failures.Rethrow();
}

void frmMain::ShowText(std::string_view sNodeKey) {
  const auto title = [this](const char* text) {
    lblTitle.Caption(text);
    lblTitle.Visible(true);
  };
  if (sNodeKey == "WindowsGroup") {
    title("Configure Harbourline");
  } else if (sNodeKey == "PortForwardingGroup") {
    title("Define port forwarding mappings for your DSL/Cable router");
  } else if (sNodeKey == "LoggingGroup") {
    title("Monitor Internet access to and from your DSL/Cable router");
  } else if (sNodeKey == "RegisterGroup") {
    title("Harbourline Information");
    imgChickens.Visible(true);
  } else if (sNodeKey == "License") {
    ShowLicense();
  } else if (sNodeKey == "Help") {
    ctlHelp_.Visible(true);
  } else if (sNodeKey == "About") {
    ctlAbout_.Visible(true);
  }
}

void frmMain::ShowLicense() {
  rtGeneral.Text(std::string());
  try {
    rtGeneral.LoadFile(modCommon::MakeFullPath(g_Registry->InstallPath(), kLicense));
  } catch (const base::Error&) {
    // Without the document the page stays empty.
  }
  rtGeneral.Visible(true);
}

void frmMain::OnResize() {
  framConfig.Visible(false);
  tvCategories.Move(ui::kMargin, ui::kMargin, kTreeWidth, std::max(0, Height() - 2 * ui::kMargin));
  const ui::Twips left = tvCategories.Right() + ui::kMargin;
  framConfig.Move(left, ui::kMargin, std::max(0, Width() - left - ui::kMargin),
                  std::max(0, Height() - 2 * ui::kMargin));
  for (ui::Control* page : framConfig.Children()) {
    if (page != &lblTitle && page != &imgChickens) page->Move(0, 0, framConfig.Width(), framConfig.Height());
  }
  lblTitle.Move(ui::kMargin, ui::kMargin, std::max(0, framConfig.Width() - 2 * ui::kMargin),
                std::max(0, framConfig.Height() - 2 * ui::kMargin));
  imgChickens.Move(framConfig.Width() - kPictureWidth, framConfig.Height() - kPictureHeight, kPictureWidth,
                   kPictureHeight);
  framConfig.Visible(true);
}
