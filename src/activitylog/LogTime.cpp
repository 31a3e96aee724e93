#include "activitylog/LogTime.h"

#include "base/Conversions.h"

namespace LogTime {
namespace {

std::string TwoDigits(std::int32_t number) {
  const std::string digits = base::ToText(number % 100);
  return digits.size() < 2 ? "0" + digits : digits;
}

}  // namespace

std::string RowTime(const platform::DateTime& moment) {
  return TwoDigits(moment.month) + "/" + TwoDigits(moment.day) + "/" + TwoDigits(moment.year) + " " +
         TwoDigits(moment.hour) + ":" + TwoDigits(moment.minute);
}

}  // namespace LogTime
