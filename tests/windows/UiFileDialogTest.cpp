#include "ui/FileDialog.h"

#include <windows.h>

#include <commdlg.h>

#include <fstream>

#include "support/Role.h"
#include "support/Ui.h"

namespace {

class UiFileDialogTest : public support::UiTest {
 protected:
  /// Runs the dialog while `name` is typed into it and the button is pressed.
  static bool Run(ui::FileDialog& dialog, const std::string& name, int button) {
    const support::Bystander user([&] {
      const HWND box =
          support::WaitFor([&] { return support::FindOwnWindow("#32770", dialog.title.c_str()); });
      const HWND edit = support::WaitFor([box] {
        const HWND combo = GetDlgItem(box, 0x47C);
        return combo ? combo : GetDlgItem(box, 0x480);
      });
      SendMessageA(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
      PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(button),
                   reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
    });
    return ui::TheInterface().dialogs->ShowFileDialog(dialog);
  }

  static ui::FileDialog Profile(bool save) {
    return {.save = save,
            .fileName = {},
            .folder = {},
            .title = "Choose a profile file",
            .filter = "All Files (*.*)|*.*|Profile (*.prf)|*.prf",
            .filterIndex = 2,
            .defaultExtension = "prf",
            .flags = save ? 0x8806u : OFN_FILEMUSTEXIST | OFN_HIDEREADONLY};
  }

  support::TemporaryFolder folder_;
};

TEST_F(UiFileDialogTest, GivesThePathOfAFileToOpen) {
  const std::string path = folder_.Path() + "\\here.prf";
  std::ofstream(path) << "x";
  ui::FileDialog dialog = Profile(false);
  ASSERT_TRUE(Run(dialog, path, IDOK));
  EXPECT_EQ(dialog.fileName, path);
  EXPECT_EQ(dialog.filterIndex, 2);
}

TEST_F(UiFileDialogTest, BeginsInTheFolderThatItIsGivenWhateverTheFolderOfTheName) {
  const std::string beside = folder_.Path() + "\\Profiles";
  ASSERT_TRUE(CreateDirectoryA(beside.c_str(), nullptr));
  std::ofstream(beside + "\\here.prf") << "x";
  ui::FileDialog dialog = Profile(false);
  dialog.fileName = folder_.Path() + "\\File.txt";
  dialog.folder = beside;
  // A file that isn't there is an answer as well, so that a dialog elsewhere doesn't stay.
  dialog.flags = OFN_HIDEREADONLY;
  ASSERT_TRUE(Run(dialog, "here.prf", IDOK));
  EXPECT_EQ(dialog.fileName, beside + "\\here.prf");
}

TEST_F(UiFileDialogTest, AddsTheDefaultExtensionToAFileToSave) {
  ui::FileDialog dialog = Profile(true);
  ASSERT_TRUE(Run(dialog, folder_.Path() + "\\new", IDOK));
  EXPECT_EQ(dialog.fileName, folder_.Path() + "\\new.prf");
}

TEST_F(UiFileDialogTest, TheReadOnlyBoxShowsUnlessItIsHidden) {
  constexpr int kReadOnlyBox = 0x410;
  for (const bool hidden : {false, true}) {
    ui::FileDialog dialog = Profile(false);
    dialog.flags = OFN_FILEMUSTEXIST | OFN_NOREADONLYRETURN | (hidden ? OFN_HIDEREADONLY : 0);
    bool shown = false;
    const support::Bystander user([&] {
      const HWND box = support::WaitFor([&] {
        const HWND found = support::FindOwnWindow("#32770", dialog.title.c_str());
        return IsWindowVisible(found) && IsWindowVisible(GetDlgItem(found, IDCANCEL)) ? found : nullptr;
      });
      shown = IsWindowVisible(GetDlgItem(box, kReadOnlyBox)) != FALSE;
      PostMessageA(box, WM_COMMAND, IDCANCEL, reinterpret_cast<LPARAM>(GetDlgItem(box, IDCANCEL)));
    });
    EXPECT_FALSE(ui::TheInterface().dialogs->ShowFileDialog(dialog));
    EXPECT_EQ(shown, !hidden);
  }
}

TEST_F(UiFileDialogTest, CancellingChangesNothing) {
  ui::FileDialog dialog = Profile(true);
  dialog.fileName = "earlier.prf";
  EXPECT_FALSE(Run(dialog, "other", IDCANCEL));
  EXPECT_EQ(dialog.fileName, "earlier.prf");
}

}  // namespace
