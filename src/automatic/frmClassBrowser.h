#pragma once

#include <string>

#include "ui/Button.h"
#include "ui/Form.h"
#include "ui/Label.h"
#include "ui/ListBox.h"
#include "ui/TextBox.h"

/// The window in which the user picks a running program by its window. What was picked stays readable after
/// the window has closed.
class frmClassBrowser : public ui::Form {
 public:
  frmClassBrowser();

  /// True when the user left by Cancel; the close box hands over what was picked, as Accept does.
  bool bCancel() const { return m_bCancel; }
  const std::string& sWindowClass() const { return m_sWindowClass; }
  void sWindowClass(std::string sClass);
  const std::string& sWindowTitle() const { return m_sWindowTitle; }
  void sWindowTitle(std::string sTitle);

 protected:
  void OnLoad() override;
  void OnResize() override;

 private:
  void lslAvailableClasses_Click();
  void cmdAccept_Click();
  void cmdCancel_Click();

  ui::ListBox lslAvailableClasses;
  ui::Label lblWindowTitle;
  ui::TextBox txtWindowTitle;
  ui::Label lblWindowClass;
  ui::TextBox txtWindowClass;
  ui::Button cmdAccept;
  ui::Button cmdCancel;
  bool m_bCancel = false;
  std::string m_sWindowClass;
  std::string m_sWindowTitle;
};
