#include "editing/ctlFileBrowseButton.h"

#include "base/Error.h"
#include "platform/Machine.h"
#include "shell/modCommon.h"
#include "ui/Toolkit.h"

namespace {

// The machine's flags of its file dialog.
constexpr std::uint32_t kOverwritePrompt = 0x2;
constexpr std::uint32_t kNoReadOnlyBox = 0x4;
constexpr std::uint32_t kPathMustExist = 0x800;
constexpr std::uint32_t kFileMustExist = 0x1000;
constexpr std::uint32_t kNoReadOnlyReturn = 0x8000;
constexpr std::uint32_t kSaveFlags = kNoReadOnlyReturn | kPathMustExist | kNoReadOnlyBox | kOverwritePrompt;

}  // namespace

ctlFileBrowseButton::ctlFileBrowseButton(ui::Control* parent, std::string name)
    : UserControl(parent, std::move(name), 1680, 2190), cmdBrowse(this, "cmdBrowse", Name()) {
  if (parent) Font(parent->Font());
  FullPathName(modCommon::MakeFullPath(platform::TheMachine().process->CurrentFolder(), "File.txt"));
  Filter("All Files (*.*)|*.*");
  DialogTitle("Dialog Title");
  DefaultExt("txt");
  cmdBrowse.Click.Connect([this] { Browse(); });
  OnResize();
}

void ctlFileBrowseButton::Caption(const std::string& sCaption) {
  cmdBrowse.Caption(sCaption);
  const std::size_t mark = sCaption.find('&');
  // The mark itself, and not the letter behind it, which the button takes for its own.
  if (mark != sCaption.npos) m_sAccessKeys = sCaption.substr(mark, 1);
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
  try {
    return ui::TheInterface().dialogs->ShowFileDialog(ctlComDiag) || !m_bCancelError;
  } catch (const base::Error&) {
    return false;
  }
}

void ctlFileBrowseButton::OnResize() {
  cmdBrowse.Move(0, 0, Width(), Height());
}
