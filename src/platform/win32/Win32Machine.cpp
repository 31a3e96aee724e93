#include "platform/win32/Win32Machine.h"

// Before the system's header, which makes macros of some names that the window list has.
#include "platform/Machine.h"
#include "platform/win32/Win32WindowList.h"

#include <windows.h>

#include <objbase.h>

#include "platform/win32/ComObjectFactory.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Win32Clock.h"
#include "platform/win32/Win32CodePage.h"
#include "platform/win32/Win32DebugOutput.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32Network.h"
#include "platform/win32/Win32NotificationArea.h"
#include "platform/win32/Win32Process.h"
#include "platform/win32/Win32RegistryFunctions.h"
#include "platform/win32/Win32SettingsStore.h"
#include "platform/win32/Win32Shell.h"
#include "platform/win32/Win32SystemHelper.h"

namespace platform::win32 {
namespace {

/// Plug-ins are called on the thread of the interface and raise their events there.
class Apartment {
 public:
  Apartment() {
    const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    if (FAILED(result)) throw ComError("COM can't be initialised", result);
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { CoUninitialize(); }
};

}  // namespace

struct Win32Machine::Services {
  Apartment apartment;
  Win32SettingsStore settings;
  Win32RegistryFunctions registry;
  ComObjectFactory objects;
  Win32SystemHelper systemHelper;
  Win32Process process;
  Win32Network network;
  Win32NotificationArea notificationArea;
  Win32WindowList windows;
  Win32Shell shell;
  Win32Clock clock;
  Win32CodePage codePage;
  Win32DebugOutput debug;
  Win32Files files;
};

Win32Machine::Win32Machine() : services_(std::make_unique<Services>()) {
  Machine& machine = TheMachine();
  machine.settings = &services_->settings;
  machine.registry = &services_->registry;
  machine.objects = &services_->objects;
  machine.systemHelper = &services_->systemHelper;
  machine.process = &services_->process;
  machine.network = &services_->network;
  machine.notificationArea = &services_->notificationArea;
  machine.windows = &services_->windows;
  machine.shell = &services_->shell;
  machine.clock = &services_->clock;
  machine.codePage = &services_->codePage;
  machine.debug = &services_->debug;
  machine.files = &services_->files;
}

Win32Machine::~Win32Machine() {
  TheMachine() = {};
}

}  // namespace platform::win32
