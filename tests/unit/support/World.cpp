#include "support/World.h"

namespace support {

World::World() : before_(platform::TheMachine()) {
  platform::TheMachine() = {&settings,         &registry, &objects, &systemHelper, &process, &network,
                            &notificationArea, &windows,  &shell,   &clock,        &debug,   &files};
}

World::~World() {
  platform::TheMachine() = before_;
}

}  // namespace support
