#include "rules/Gateway.h"

namespace upnp {

bool IsMissing(const Answer& answer) {
  return answer.IsRefused(error::kNoSuchEntry) || answer.IsRefused(error::kEndOfTable);
}

}  // namespace upnp
