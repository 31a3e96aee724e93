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

std::string TimeOfDay(const platform::DateTime& moment) {
  const std::int32_t hour = moment.hour % 12 == 0 ? 12 : moment.hour % 12;
  return base::ToText(hour) + ":" + TwoDigits(moment.minute) + ":" + TwoDigits(moment.second) +
         (moment.hour < 12 ? " AM" : " PM");
}

}  // namespace LogTime
