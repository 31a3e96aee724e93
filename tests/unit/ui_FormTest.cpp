#include "ui/Form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Frame.h"
#include "ui/TextBox.h"
#include "ui/Timer.h"
#include "ui/UserControl.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::Aspect;
using ui::CloseReason;

/// A window that writes down its life and does there what a test asks for.
class Window : public ui::Form {
 public:
  explicit Window(std::vector<std::string>& life, std::string name = "frmTest")
      : Form(std::move(name), "Test", {}, 3000, 2000), life_(life) {}

  std::function<void()> onLoad;
  std::function<void(bool&, CloseReason)> onQuery;
  std::function<void()> onUnload;
  int layouts = 0;

 protected:
  void OnLoad() override {
    Tell("load");
    if (onLoad) onLoad();
  }
  void OnQueryUnload(bool& cancel, CloseReason reason) override {
    Tell("query " + std::to_string(static_cast<int>(reason)));
    if (onQuery) onQuery(cancel, reason);
  }
  void OnUnload() override {
    Tell("unload");
    if (onUnload) onUnload();
  }
  void OnResize() override { ++layouts; }

 private:
  void Tell(const std::string& what) { life_.push_back(Name() == "frmTest" ? what : Name() + " " + what); }

  std::vector<std::string>& life_;
};

class UiForm : public support::InterfaceTest {
 protected:
  std::vector<std::string> life;
};

TEST_F(UiForm, ConstructionAndStateLoadNothing) {
  Window window(life);
  window.Caption("Other");
  window.BackColor(ui::kWhite);
  window.Move(0, 0, 10, 10);
  window.Visible(false);
  EXPECT_EQ(window.Handle(), 0u);
  EXPECT_FALSE(window.IsLoaded());
  EXPECT_FALSE(window.Visible());
  EXPECT_THAT(life, IsEmpty());
  EXPECT_THAT(ui::Form::LoadedForms(), IsEmpty());
}

TEST_F(UiForm, LoadsOnceAndHasItsNativeWindowBeforeItsLoadStep) {
  Window window(life);
  std::uintptr_t handle = 0;
  window.onLoad = [&] { handle = window.Handle(); };
  window.Load();
  window.Load();
  EXPECT_THAT(life, ElementsAre("load"));
  EXPECT_NE(handle, 0u);
  EXPECT_FALSE(window.Visible());
  EXPECT_THAT(ui::Form::LoadedForms(), ElementsAre(&window));
}

TEST_F(UiForm, AnIconLoadsIt) {
  Window window(life);
  window.Icon(ui::ResourcePicture("icon"));
  EXPECT_THAT(life, ElementsAre("load"));
  EXPECT_EQ(window.Icon()->resource, "icon");
}

TEST_F(UiForm, ShowingLoadsItAndBringsItToTheFront) {
  Window owner(life, "frmOwner");
  Window window(life);
  window.Show(&owner);
  EXPECT_THAT(life, ElementsAre("load"));
  EXPECT_TRUE(window.Visible());
  EXPECT_FALSE(window.IsModal());
  EXPECT_EQ(window.Owner(), &owner);
  EXPECT_EQ(toolkit.TakeFocus(window), 1);
}

TEST_F(UiForm, ShowingAVisibleWindowBringsItToTheFrontAgain) {
  Window window(life);
  window.Show();
  toolkit.TakeChanges(window);
  toolkit.TakeFocus(window);
  window.Show();
  EXPECT_THAT(toolkit.TakeChanges(window), IsEmpty());
  EXPECT_EQ(toolkit.TakeFocus(window), 1);
}

TEST_F(UiForm, IsLaidOutWhenItComesUpInItsDesignSize) {
  Window window(life);
  EXPECT_EQ(window.layouts, 0);
  window.Show();
  EXPECT_EQ(window.layouts, 1);
}

TEST_F(UiForm, ItsLoadStepMayShowIt) {
  Window window(life);
  window.onLoad = [&] { window.Show(); };
  window.Load();
  EXPECT_THAT(life, ElementsAre("load"));
  EXPECT_TRUE(window.Visible());
}

TEST_F(UiForm, ItsLoadStepMayUnloadIt) {
  Window window(life);
  window.onLoad = [&] { window.Unload(); };
  window.Show();
  EXPECT_THAT(life, ElementsAre("load", "query 1", "unload"));
  EXPECT_FALSE(window.IsLoaded());
  EXPECT_FALSE(window.Visible());
  EXPECT_EQ(window.Handle(), 0u);
}

TEST_F(UiForm, AModalWindowThatUnloadsItselfInItsLoadStepReturnsAtOnce) {
  Window window(life);
  window.onLoad = [&] { window.Unload(); };
  window.ShowModal(nullptr);
  EXPECT_FALSE(window.IsModal());
  EXPECT_FALSE(window.Visible());
}

TEST_F(UiForm, AFailingLoadStepLeavesItLoadedAndGoesToTheCaller) {
  Window window(life);
  window.onLoad = [] { throw base::Error(5, "No"); };
  EXPECT_EQ(support::ErrorOf([&] { window.Show(); }), 5);
  EXPECT_TRUE(window.IsLoaded());
  EXPECT_FALSE(window.Visible());
}

TEST_F(UiForm, IsNotLoadedWhenAPeerCanNotBeMade) {
  Window window(life);
  ui::TextBox first(&window, "txtFirst");
  ui::TextBox second(&window, "txtSecond");
  toolkit.failingPeer = "txtSecond";
  EXPECT_EQ(support::ErrorOf([&] { window.Load(); }), base::ErrorNumber::kOutOfMemory);
  EXPECT_FALSE(window.IsLoaded());
  EXPECT_EQ(first.GetPeer(), nullptr);
  EXPECT_EQ(window.Handle(), 0u);
  EXPECT_THAT(ui::Form::LoadedForms(), IsEmpty());
  EXPECT_THAT(life, IsEmpty());
  toolkit.failingPeer.clear();
  window.Load();
  EXPECT_THAT(life, ElementsAre("load"));
}

TEST_F(UiForm, UnloadingAsksThenTellsThenTakesTheNativeWindow) {
  Window window(life);
  std::uintptr_t handle = 0;
  bool visible = false;
  window.onUnload = [&] {
    handle = window.Handle();
    visible = window.Visible();
  };
  window.Show();
  EXPECT_TRUE(window.Unload());
  EXPECT_THAT(life, ElementsAre("load", "query 1", "unload"));
  EXPECT_NE(handle, 0u);
  EXPECT_TRUE(visible);
  EXPECT_FALSE(window.IsLoaded());
  EXPECT_FALSE(window.Visible());
  EXPECT_EQ(window.Handle(), 0u);
  EXPECT_THAT(ui::Form::LoadedForms(), IsEmpty());
}

TEST_F(UiForm, UnloadingWhatIsNotLoadedAsksNothing) {
  Window window(life);
  EXPECT_TRUE(window.Unload());
  EXPECT_THAT(life, IsEmpty());
}

TEST_F(UiForm, ARefusedUnloadLeavesEverything) {
  Window window(life);
  window.onQuery = [](bool& cancel, CloseReason) { cancel = true; };
  window.Show();
  EXPECT_FALSE(window.Unload(CloseReason::kUser));
  EXPECT_THAT(life, ElementsAre("load", "query 0"));
  EXPECT_TRUE(window.IsLoaded());
  EXPECT_TRUE(window.Visible());
  EXPECT_NE(window.Handle(), 0u);
}

TEST_F(UiForm, AFailingQueryLeavesItLoaded) {
  Window window(life);
  window.onQuery = [](bool&, CloseReason) { throw base::Error(5, "No"); };
  window.Show();
  EXPECT_EQ(support::ErrorOf([&] { window.Unload(); }), 5);
  EXPECT_TRUE(window.IsLoaded());
  window.onQuery = nullptr;
  EXPECT_TRUE(window.Unload());
}

TEST_F(UiForm, AFailingUnloadStepDoesNotKeepItOpen) {
  Window window(life);
  window.onUnload = [] { throw base::Error(5, "No"); };
  window.Show();
  EXPECT_EQ(support::ErrorOf([&] { window.Unload(); }), 5);
  EXPECT_FALSE(window.IsLoaded());
  EXPECT_FALSE(window.Visible());
  EXPECT_EQ(window.Handle(), 0u);
}

/// A page that writes down its end.
class Page : public ui::UserControl {
 public:
  Page(ui::Control* parent, std::string name, std::vector<std::string>& ends)
      : UserControl(parent, std::move(name), 100, 100), ends_(ends) {}
  bool fails = false;

 private:
  void OnEnd() override {
    ends_.push_back(Name());
    EXPECT_TRUE(ParentForm()->IsLoaded());
    if (fails) throw base::Error(70, "Disk full");
  }

  std::vector<std::string>& ends_;
};

TEST_F(UiForm, AllThatStandsOnItEndsOnceAfterItsUnloadStep) {
  Window window(life);
  ui::Frame frame(&window, "framOne");
  Page first(&frame, "ctlFirst", life);
  Page inner(&first, "ctlInner", life);
  Page second(&window, "ctlSecond", life);
  window.Show();
  window.Unload();
  EXPECT_THAT(life, ElementsAre("load", "query 1", "unload", "ctlInner", "ctlFirst", "ctlSecond"));
}

TEST_F(UiForm, APageThatFailsAtItsEndIsToldAndTheOthersEnd) {
  Window window(life);
  Page first(&window, "ctlFirst", life);
  Page second(&window, "ctlSecond", life);
  first.fails = true;
  window.onUnload = [] { throw base::Error(5, "No"); };
  window.Show();
  EXPECT_EQ(support::ErrorOf([&] { window.Unload(); }), 5);
  EXPECT_THAT(life, ElementsAre("load", "query 1", "unload", "ctlFirst", "ctlSecond"));
  EXPECT_THAT(Messages(), ElementsAre("Disk full (70)"));
  EXPECT_FALSE(window.IsLoaded());
}

TEST_F(UiForm, CanBeLoadedAgain) {
  Window window(life);
  window.Show();
  window.Unload();
  window.Show();
  EXPECT_THAT(life, ElementsAre("load", "query 1", "unload", "load"));
  EXPECT_TRUE(window.Visible());
}

TEST_F(UiForm, IsToldOnceWhenItIsClosedAgainOnItsWayOut) {
  Window window(life);
  window.onQuery = [&](bool&, CloseReason) { window.Unload(); };
  window.onUnload = [&] { window.UserClose(CloseReason::kUser); };
  window.Show();
  EXPECT_TRUE(window.Unload());
  EXPECT_THAT(life, ElementsAre("load", "query 1", "unload"));
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(UiForm, TheCloseBoxUnloadsItForTheUser) {
  Window window(life);
  window.Show();
  window.UserClose(CloseReason::kUser);
  EXPECT_THAT(life, ElementsAre("load", "query 0", "unload"));
  EXPECT_FALSE(window.IsLoaded());
}

TEST_F(UiForm, AFailureOnTheWayOutIsTold) {
  Window window(life);
  window.onUnload = [] { throw base::Error(462, "The router is gone"); };
  window.Show();
  window.UserClose(CloseReason::kUser);
  EXPECT_THAT(Messages(), ElementsAre("The router is gone (462)"));
  EXPECT_FALSE(window.IsLoaded());
}

TEST_F(UiForm, AModalWindowReturnsWhenItIsHidden) {
  Window window(life);
  bool modal = false;
  toolkit.whenIdle = [&] {
    modal = window.IsModal();
    window.Hide();
  };
  window.ShowModal(nullptr);
  EXPECT_TRUE(modal);
  EXPECT_FALSE(window.IsModal());
  EXPECT_TRUE(window.IsLoaded());
}

TEST_F(UiForm, AModalWindowReturnsWhenATimerUnloadsIt) {
  Window owner(life, "frmOwner");
  Window window(life);
  ui::Timer timer(&window, "tmClose");
  timer.Interval(7000);
  timer.Enabled(true);
  timer.Tick.Connect([&] {
    EXPECT_EQ(window.Owner(), &owner);
    window.Unload();
  });
  window.ShowModal(&owner);
  EXPECT_EQ(window.Owner(), nullptr);
  EXPECT_FALSE(window.IsLoaded());
  EXPECT_THAT(life, ElementsAre("load", "query 1", "unload"));
}

TEST_F(UiForm, AModalWindowMayOpenAnother) {
  Window first(life, "frmFirst");
  Window second(life, "frmSecond");
  std::vector<std::string> order;
  toolkit.whenIdle = [&] {
    if (second.Visible()) {
      order.push_back("second closes");
      second.Hide();
    } else if (order.empty()) {
      second.ShowModal(&first);
      EXPECT_TRUE(first.IsModal());
    } else {
      order.push_back("first closes");
      first.Hide();
    }
  };
  first.ShowModal(nullptr);
  EXPECT_THAT(order, ElementsAre("second closes", "first closes"));
}

TEST_F(UiForm, AModalWindowIsNotModalAfterAFailure) {
  Window window(life);
  toolkit.whenIdle = [] { throw std::runtime_error("broken"); };
  EXPECT_THROW(window.ShowModal(nullptr), std::runtime_error);
  EXPECT_FALSE(window.IsModal());
}

TEST_F(UiForm, AnOwnerTakesItsWindowsWithIt) {
  Window owner(life, "frmOwner");
  Window window(life);
  owner.Show();
  window.Show(&owner);
  owner.onUnload = [&] { EXPECT_FALSE(window.IsLoaded()); };
  EXPECT_TRUE(owner.Unload());
  EXPECT_THAT(
      life, ElementsAre("frmOwner load", "load", "frmOwner query 1", "query 5", "unload", "frmOwner unload"));
}

TEST_F(UiForm, AnOwnedWindowThatRefusesKeepsItsOwner) {
  Window owner(life, "frmOwner");
  Window window(life);
  window.onQuery = [](bool& cancel, CloseReason) { cancel = true; };
  owner.Show();
  window.Show(&owner);
  EXPECT_FALSE(owner.Unload());
  EXPECT_TRUE(owner.IsLoaded());
  EXPECT_TRUE(window.IsLoaded());
}

TEST_F(UiForm, HasNoOwnerAnyMoreWhenThatIsDestroyed) {
  auto owner = std::make_unique<Window>(life, "frmOwner");
  Window window(life);
  window.Show(owner.get());
  owner.reset();
  EXPECT_EQ(window.Owner(), nullptr);
  EXPECT_TRUE(window.IsLoaded());
}

TEST_F(UiForm, DestroyedWhileLoadedItIsGone) {
  auto window = std::make_unique<Window>(life);
  ui::TextBox box(window.get(), "txtName");
  window->Show();
  window.reset();
  EXPECT_THAT(ui::Form::LoadedForms(), IsEmpty());
  EXPECT_EQ(box.GetPeer(), nullptr);
  EXPECT_THAT(toolkit.peers, ElementsAre("make frmTest", "make txtName", "take txtName", "take frmTest"));
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
}

TEST_F(UiForm, TheEndOfTheSessionIsAskedOfEachLoadedWindow) {
  Window first(life, "frmFirst");
  Window second(life, "frmSecond");
  Window third(life, "frmThird");
  second.Load();
  first.Load();
  life.clear();
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
  EXPECT_THAT(life, ElementsAre("frmSecond query 2", "frmFirst query 2"));
  EXPECT_TRUE(first.IsLoaded());
}

TEST_F(UiForm, OneRefusalKeepsTheSession) {
  Window first(life, "frmFirst");
  Window second(life, "frmSecond");
  first.Load();
  second.Load();
  life.clear();
  first.onQuery = [](bool& cancel, CloseReason) { cancel = true; };
  EXPECT_FALSE(ui::Form::QuerySessionEnd());
  EXPECT_THAT(life, ElementsAre("frmFirst query 2"));
}

TEST_F(UiForm, AFailureKeepsTheSessionNeitherByARefusalNorByABox) {
  Window window(life);
  window.Load();
  window.onQuery = [](bool&, CloseReason) { throw base::Error(70, "Disk full"); };
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(UiForm, AWindowThatWentWhileOthersWereAskedIsNotAsked) {
  Window first(life, "frmFirst");
  auto second = std::make_unique<Window>(life, "frmSecond");
  Window third(life, "frmThird");
  first.Load();
  second->Load();
  third.Load();
  first.onQuery = [&](bool&, CloseReason) {
    second.reset();
    third.onQuery = nullptr;
  };
  life.clear();
  EXPECT_TRUE(ui::Form::QuerySessionEnd());
  EXPECT_THAT(life, ElementsAre("frmFirst query 2", "frmThird query 2"));
}

TEST_F(UiForm, TheUserResizesItWithoutAnEcho) {
  Window window(life);
  window.Show();
  toolkit.TakeChanges(window);
  window.layouts = 0;
  window.UserResize({0, 0, 4000, 3000});
  EXPECT_EQ(window.Width(), 4000);
  EXPECT_EQ(window.layouts, 1);
  window.UserResize({50, 50, 4000, 3000});
  EXPECT_EQ(window.Left(), 50);
  EXPECT_EQ(window.layouts, 1);
  EXPECT_THAT(toolkit.TakeChanges(window), IsEmpty());
}

/// A window that hides its boxes, moves them and shows them again.
class HidingWindow : public ui::Form {
 public:
  HidingWindow() : Form("frmHiding", "Test", {}, 3000, 2000) { boxTwo.Visible(false); }

  ui::Frame frame{this, "framOne"};
  ui::TextBox boxOne{&frame, "txtOne"};
  ui::TextBox boxTwo{&frame, "txtTwo"};
  bool fails = false;

 protected:
  void OnResize() override {
    for (ui::Control* control : {static_cast<ui::Control*>(&frame), static_cast<ui::Control*>(&boxOne)}) {
      control->Visible(false);
    }
    boxOne.Move(0, 0, Width(), 300);
    if (fails) throw base::Error(70, "Disk full");
    frame.Visible(true);
    boxOne.Visible(true);
    boxTwo.Visible(Width() > 3500);
  }
};

TEST_F(UiForm, WhatIsHiddenWhileTheUserResizesItAndShownAgainStaysOnTheScreen) {
  HidingWindow window;
  window.Show();
  for (ui::Control* control :
       {static_cast<ui::Control*>(&window.frame), static_cast<ui::Control*>(&window.boxOne),
        static_cast<ui::Control*>(&window.boxTwo)}) {
    toolkit.TakeChanges(*control);
  }
  window.UserResize({0, 0, 4000, 3000});
  EXPECT_THAT(toolkit.TakeChanges(window.frame), IsEmpty());
  EXPECT_THAT(toolkit.TakeChanges(window.boxOne), ElementsAre(Aspect::kBounds));
  EXPECT_THAT(toolkit.TakeChanges(window.boxTwo), ElementsAre(Aspect::kVisible));
  window.boxOne.Visible(false);
  EXPECT_THAT(toolkit.TakeChanges(window.boxOne), ElementsAre(Aspect::kVisible));
}

TEST_F(UiForm, AResizeThatFailsHalfWayShowsWhatTheControlsAre) {
  HidingWindow window;
  window.Show();
  toolkit.TakeChanges(window.boxOne);
  window.fails = true;
  window.UserResize({0, 0, 4000, 3000});
  EXPECT_THAT(Messages(), ElementsAre("Disk full (70)"));
  EXPECT_FALSE(window.boxOne.Visible());
  EXPECT_THAT(toolkit.TakeChanges(window.boxOne), ElementsAre(Aspect::kBounds, Aspect::kVisible));
}

TEST_F(UiForm, TheMouseIsReportedInTwips) {
  Window window(life);
  std::vector<float> places;
  window.MouseMove.Connect([&](float x, float y) { places = {x, y}; });
  window.UserMouseMove(7710, 15);
  EXPECT_THAT(places, ElementsAre(7710.0f, 15.0f));
}

class UiFormHelp : public UiForm {
 protected:
  UiFormHelp() {
    ui::TheInterface().help = [this](std::uintptr_t, std::int32_t topic) { topics.push_back(topic); };
  }

  Window window{life};
  ui::UserControl page{&window, "ctlTest", 3000, 2000};
  ui::Frame frame{&page, "framTest"};
  ui::TextBox name{&frame, "txtName"};
  std::vector<std::int32_t> topics;
};

TEST_F(UiFormHelp, TheHelpKeyShowsTheTopicOfTheControlWithTheFocus) {
  window.HelpContextID(9000);
  page.HelpContextID(7000);
  name.HelpContextID(8000);
  name.UserFocus(true);
  window.UserHelp();
  EXPECT_THAT(topics, ElementsAre(8000));
}

TEST_F(UiFormHelp, AControlWithoutATopicHasThatOfTheNearestThingItStandsOn) {
  window.HelpContextID(9000);
  page.HelpContextID(7000);
  name.UserFocus(true);
  window.UserHelp();
  page.HelpContextID(0);
  window.UserHelp();
  EXPECT_THAT(topics, ElementsAre(7000, 9000));
}

TEST_F(UiFormHelp, WithTheFocusNowhereTheWindowsTopicIsShown) {
  window.HelpContextID(4000);
  page.HelpContextID(7000);
  window.UserHelp();
  EXPECT_THAT(topics, ElementsAre(4000));
}

TEST_F(UiFormHelp, WithoutAnyTopicTheContentsAreShown) {
  name.UserFocus(true);
  window.UserHelp();
  EXPECT_THAT(topics, ElementsAre(0));
}

TEST_F(UiFormHelp, AHelpThatFailsIsToldLikeEveryFailureOfAKey) {
  ui::TheInterface().help = [](std::uintptr_t, std::int32_t) {
    throw base::Error(base::ErrorNumber::kOutOfMemory, "No more");
  };
  window.UserHelp();
  EXPECT_EQ(Messages().size(), 1u);
}

}  // namespace
