#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "ui/Button.h"
#include "ui/FileDialog.h"
#include "ui/PropertyBag.h"
#include "ui/UserControl.h"

/// A button that asks for a file by the operating system's dialog and reports when the user has chosen one.
/// Writing a property marks it as changed, by PropertyChanged.
class ctlFileBrowseButton : public ui::UserControl {
 public:
  /// What the dialog asks for. With any other number there is no dialog, and a press is the choice.
  static constexpr std::int32_t kOpen = 0;
  static constexpr std::int32_t kSave = 1;

  ctlFileBrowseButton(ui::Control* parent, std::string name);

  /// The user has chosen: FullPathName holds the file.
  base::Event<> BrowseComplete;

  /// What a name gets that is typed without an extension; empty for nothing.
  const std::string& DefaultExt() const { return ctlComDiag.defaultExtension; }
  /// Marks the key "txt", and not its own.
  void DefaultExt(std::string sExtension);
  /// When set, a cancelled dialog counts as complete; FullPathName keeps its value.
  bool HideCancelButton() const { return !m_bCancelError; }
  void HideCancelButton(bool bHide);
  const std::string& DialogTitle() const { return ctlComDiag.title; }
  void DialogTitle(std::string sTitle);
  /// The sense is the reverse of the name: the dialog that opens a file shows its box for reading only when
  /// this is set.
  bool HideReadOnly() const { return m_bHideReadOnly; }
  void HideReadOnly(bool bHide);
  std::int32_t BrowseType() const { return m_lBrowseType; }
  void BrowseType(std::int32_t lType);
  /// A caption with a "&" makes that character the access key.
  const std::string& Caption() const { return cmdBrowse.Caption(); }
  void Caption(const std::string& sCaption);
  const std::string& AccessKeys() const { return m_sAccessKeys; }
  const ui::Font& Font() const { return cmdBrowse.Font(); }
  void Font(const ui::Font& font);
  /// Pairs of a text and a pattern, all separated by "|".
  const std::string& Filter() const { return ctlComDiag.filter; }
  void Filter(std::string sFilter);
  /// Counts from 1; the user's last choice once the dialog has been up.
  std::int16_t FilterIndex() const { return ctlComDiag.filterIndex; }
  /// Marks nothing.
  void FilterIndex(std::int16_t iIndex) { ctlComDiag.filterIndex = iIndex; }
  const std::string& FullPathName() const { return ctlComDiag.fileName; }
  void FullPathName(std::string sFullPathName);
  /// Where the dialog that opens a file begins until the user has chosen one; empty for the folder of
  /// FullPathName.
  const std::string& InitialFolder() const { return initialFolder_; }
  void InitialFolder(std::string folder) { initialFolder_ = std::move(folder); }
  bool Enabled() const { return cmdBrowse.Enabled(); }
  void Enabled(bool bEnabled);

  /// The stored form of the properties above. "HideCancelButton" holds the reverse of the property: True when
  /// a cancel isn't a choice.
  void WriteProperties(ui::PropertyBag& bag) const;
  /// A property that is missing gets the value that a new control has; one of another type is a failure.
  void ReadProperties(const ui::PropertyBag& bag);

 protected:
  void OnResize() override;

 private:
  void ShowCaption(const std::string& sCaption);
  ui::Font DefaultFont() const;
  /// True when the user cancelled or the dialog failed.
  bool Browse();
  /// False when the user cancelled, where that isn't a choice, or when the dialog failed.
  bool ShowDialog();

  ui::Button cmdBrowse;
  ui::FileDialog ctlComDiag;
  std::int32_t m_lBrowseType = kOpen;
  bool m_bHideReadOnly = false;
  bool m_bCancelError = true;
  std::string m_sAccessKeys;
  std::string initialFolder_;
  bool hasChosen_ = false;
};
