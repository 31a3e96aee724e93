#include "platform/Shell.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include "platform/win32/Win32Machine.h"
#include "platform/win32/Win32Shell.h"
#include "support/RegistryAccess.h"
#include "support/Role.h"

namespace {

using support::Wide;

constexpr wchar_t kClasses[] = L"Software\\Classes\\";

/// Opens a document: sends the signal whose name the document's file has, with "hidden" or "shown" in front
/// as it was asked to start.
const support::Role viewer("view-a-document", [](const std::vector<std::string>& arguments) {
  STARTUPINFOA start{};
  GetStartupInfoA(&start);
  if (!(start.dwFlags & STARTF_USESHOWWINDOW)) return 2;
  const std::string& path = arguments.at(0);
  const std::size_t name = path.find_last_of('\\') + 1;
  support::Signal((start.wShowWindow == SW_HIDE ? "hidden" : "shown") +
                  path.substr(name, path.find_last_of('.') - name))
      .Send();
  return 0;
});

/// Documents of a type of their own, which the test program opens.
class ShellTest : public testing::Test {
 protected:
  ShellTest() {
    const std::string command = "\"" + support::OwnProgram() + "\" view-a-document \"%1\"";
    support::WriteValue(kClasses + Wide(extension_), L"", support::TextValue(Wide(type_)),
                        HKEY_LOCAL_MACHINE);
    support::WriteValue(kClasses + Wide(type_) + L"\\shell\\open\\command", L"",
                        support::TextValue(Wide(command)), HKEY_LOCAL_MACHINE);
  }
  ~ShellTest() override {
    support::DeleteTree(kClasses + Wide(extension_), HKEY_LOCAL_MACHINE);
    support::DeleteTree(kClasses + Wide(type_), HKEY_LOCAL_MACHINE);
  }

  /// The path of a new document.
  std::string Document(const std::string& name) const {
    const std::string path = folder_.Path() + "\\" + name + extension_;
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    CloseHandle(file);
    return path;
  }

  const platform::win32::Win32Machine machine_;
  const support::TemporaryFolder folder_;
  const std::string extension_ = ".hl" + std::to_string(GetCurrentProcessId());
  const std::string type_ = support::UniqueName("HarbourlineTest");
  platform::win32::Win32Shell shell_;
};

TEST_F(ShellTest, OpensADocumentWithItsProgramAndShowCommandZero) {
  const std::string name = support::UniqueName("opened");
  const support::Signal opened("hidden" + name);
  EXPECT_GT(shell_.Open(Document(name)), 32);
  EXPECT_TRUE(opened.Wait());
}

TEST_F(ShellTest, ShowsADocumentInAWindowThatIsSeen) {
  const std::string name = support::UniqueName("shown");
  const support::Signal opened("shown" + name);
  EXPECT_TRUE(shell_.Show(0, Document(name)));
  EXPECT_TRUE(opened.Wait());
}

TEST_F(ShellTest, AMissingDocumentGivesTheMachinesCode) {
  EXPECT_EQ(shell_.Open(folder_.Path() + "\\missing" + extension_), ERROR_FILE_NOT_FOUND);
}

TEST_F(ShellTest, ADocumentThatNoProgramOpensGivesTheMachinesCode) {
  support::DeleteTree(kClasses + Wide(type_), HKEY_LOCAL_MACHINE);
  EXPECT_EQ(shell_.Open(Document("orphan")), SE_ERR_NOASSOC);
}

}  // namespace
