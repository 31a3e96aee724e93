#include "ui/ctlFileBrowseButton.h"

#include <utility>

#include "base/Error.h"
#include "platform/FilePath.h"
#include "platform/Machine.h"
#include "ui/Toolkit.h"

namespace {

// The flags of the operating system's file dialog.
constexpr std::uint32_t kOverwritePrompt = 0x2;
constexpr std::uint32_t kNoReadOnlyBox = 0x4;
constexpr std::uint32_t kPathMustExist = 0x800;
constexpr std::uint32_t kFileMustExist = 0x1000;
constexpr std::uint32_t kNoReadOnlyReturn = 0x8000;
constexpr std::uint32_t kSaveFlags = kNoReadOnlyReturn | kPathMustExist | kNoReadOnlyBox | kOverwritePrompt;

constexpr const char* kAllFiles = "All Files (*.*)|*.*";
constexpr std::int16_t kFirstFilter = 1;

std::string DefaultPathName() {
  return platform::MakeFullPath(platform::TheMachine().process->CurrentFolder(), "File.txt");
}

}  // namespace

ctlFileBrowseButton::ctlFileBrowseButton(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 1680, 2190), cmdBrowse(this, "cmdBrowse") {
  ReadProperties({});
  cmdBrowse.Click.Connect([this] { Browse(); });
  OnResize();
}

void ctlFileBrowseButton::DefaultExt(std::string sExtension) {
  ctlComDiag.defaultExtension = std::move(sExtension);
  PropertyChanged.Raise("txt");
}

void ctlFileBrowseButton::HideCancelButton(bool bHide) {
  m_bCancelError = !bHide;
  PropertyChanged.Raise("HideCancelButton");
}

void ctlFileBrowseButton::DialogTitle(std::string sTitle) {
  ctlComDiag.title = std::move(sTitle);
  PropertyChanged.Raise("DialogTitle");
}

void ctlFileBrowseButton::HideReadOnly(bool bHide) {
  m_bHideReadOnly = bHide;
  PropertyChanged.Raise("HideReadOnly");
}

void ctlFileBrowseButton::BrowseType(std::int32_t lType) {
  m_lBrowseType = lType;
  PropertyChanged.Raise("BrowseType");
}

void ctlFileBrowseButton::Caption(const std::string& sCaption) {
  ShowCaption(sCaption);
  PropertyChanged.Raise("Caption");
}

void ctlFileBrowseButton::ShowCaption(const std::string& sCaption) {
  cmdBrowse.Caption(sCaption);
  const std::size_t mark = sCaption.find('&');
  // The mark itself, and not the letter behind it, which the button takes for its own.
  if (mark != sCaption.npos) m_sAccessKeys = sCaption.substr(mark, 1);
}

void ctlFileBrowseButton::Font(const ui::Font& font) {
  cmdBrowse.Font(font);
  PropertyChanged.Raise("Font");
}

void ctlFileBrowseButton::Filter(std::string sFilter) {
  ctlComDiag.filter = std::move(sFilter);
  PropertyChanged.Raise("Filter");
}

void ctlFileBrowseButton::FullPathName(std::string sFullPathName) {
  ctlComDiag.fileName = std::move(sFullPathName);
  PropertyChanged.Raise("FullPathName");
}

void ctlFileBrowseButton::Enabled(bool bEnabled) {
  cmdBrowse.Enabled(bEnabled);
  PropertyChanged.Raise("Enabled");
}

void ctlFileBrowseButton::WriteProperties(ui::PropertyBag& bag) const {
  bag.Write("Caption", Caption());
  bag.Write("Filter", Filter());
  bag.Write("FilterIndex", FilterIndex());
  bag.Write("Font", Font());
  bag.Write("FullPathName", FullPathName());
  bag.Write("BrowseType", BrowseType());
  bag.Write("HideReadOnly", HideReadOnly());
  bag.Write("DialogTitle", DialogTitle());
  bag.Write("HideCancelButton", m_bCancelError);
  bag.Write("DefaultExt", DefaultExt());
  bag.Write("Enabled", Enabled());
}

void ctlFileBrowseButton::ReadProperties(const ui::PropertyBag& bag) {
  ShowCaption(bag.Read("Caption", Name()));
  ctlComDiag.filter = bag.Read("Filter", std::string(kAllFiles));
  ctlComDiag.filterIndex = bag.Read("FilterIndex", kFirstFilter);
  cmdBrowse.Font(bag.Read("Font", DefaultFont()));
  ctlComDiag.fileName = bag.Read("FullPathName", DefaultPathName());
  m_lBrowseType = bag.Read("BrowseType", kOpen);
  m_bHideReadOnly = bag.Read("HideReadOnly", false);
  ctlComDiag.title = bag.Read("DialogTitle", std::string("Dialog Title"));
  m_bCancelError = bag.Read("HideCancelButton", true);
  ctlComDiag.defaultExtension = bag.Read("DefaultExt", std::string("txt"));
  cmdBrowse.Enabled(bag.Read("Enabled", true));
}

ui::Font ctlFileBrowseButton::DefaultFont() const {
  return Parent() ? Parent()->Font() : ui::BodyFont();
}

bool ctlFileBrowseButton::Browse() {
  if ((m_lBrowseType == kOpen || m_lBrowseType == kSave) && !ShowDialog()) return true;
  BrowseComplete.Raise();
  return false;
}

bool ctlFileBrowseButton::ShowDialog() {
  ctlComDiag.save = m_lBrowseType == kSave;
  ctlComDiag.flags = ctlComDiag.save
                         ? kSaveFlags
                         : kFileMustExist | kNoReadOnlyReturn | (m_bHideReadOnly ? 0 : kNoReadOnlyBox);
  ctlComDiag.folder = ctlComDiag.save || hasChosen_ ? std::string() : initialFolder_;
  try {
    const bool chosen = ui::TheInterface().dialogs->ShowFileDialog(ctlComDiag);
    hasChosen_ = hasChosen_ || chosen;
    return chosen || !m_bCancelError;
  } catch (const base::Error&) {
    return false;
  }
}

void ctlFileBrowseButton::OnResize() {
  cmdBrowse.Move(0, 0, Width(), Height());
}
