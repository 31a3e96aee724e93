#pragma once

#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/DebugOutput.h"
#include "platform/Files.h"
#include "platform/Network.h"
#include "platform/NotificationArea.h"
#include "platform/ObjectFactory.h"
#include "platform/Process.h"
#include "platform/RegistryFunctions.h"
#include "platform/SettingsStore.h"
#include "platform/Shell.h"
#include "platform/SystemHelper.h"
#include "platform/WindowList.h"

namespace platform {

/// Everything that the program asks of the machine it runs on. The entry puts the real answers in place; a
/// test puts a world in memory there.
struct Machine {
  SettingsStore* settings = nullptr;
  RegistryFunctions* registry = nullptr;
  ObjectFactory* objects = nullptr;
  SystemHelper* systemHelper = nullptr;
  Process* process = nullptr;
  Network* network = nullptr;
  NotificationArea* notificationArea = nullptr;
  WindowList* windows = nullptr;
  Shell* shell = nullptr;
  Clock* clock = nullptr;
  CodePage* codePage = nullptr;
  DebugOutput* debug = nullptr;
  Files* files = nullptr;
};

Machine& TheMachine();

}  // namespace platform
