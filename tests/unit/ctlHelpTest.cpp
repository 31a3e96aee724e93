#include "setup/ctlHelp.h"

#include <gtest/gtest.h>

#include "support/FindControl.h"
#include "support/World.h"
#include "ui/Form.h"

namespace {

TEST(ctlHelp, ItsTextHasTheEllipsisOfTheCodePageWhateverThatIs) {
  for (const char* ellipsis : {"\x85", "\x81\x63"}) {
    support::World world;
    world.codePage.ellipsis = ellipsis;
    ui::Form window("frmTest", "Test", {}, 8000, 6000);
    ctlHelp page(&window, "ctlHelp");
    EXPECT_EQ(support::FindControl<ui::Label>(page, "lblHelp").Caption(),
              std::string("You can press the 'F1' key at anytime to bring up context sensitive help for that "
                          "subject. By pressing the \"Help") +
                  ellipsis + "\" button below, you will be taken to the help menu.");
  }
}

}  // namespace
