#include "Destinations/MissedMessages.h"

#include <limits>
#include <utility>

#include <YBase/NumberText.h>

namespace YLog {

namespace {

constexpr int RETRY_PERIOD_SECONDS = 300;

}  // namespace

void MissedMessages::Begin(std::string reason, int count) {
  mReason = std::move(reason);
  mCount = count;
  mFailureStartTime = YDataType::DateTime::Now();
  mLastFailureTime = mFailureStartTime;
}

void MissedMessages::CountDropped() noexcept {
  if (mCount < std::numeric_limits<int>::max()) ++mCount;
}

void MissedMessages::RetryFailed() {
  mLastFailureTime = YDataType::DateTime::Now();
  CountDropped();
}

void MissedMessages::Clear() noexcept {
  mReason.clear();
  mCount = 0;
}

bool MissedMessages::IsRetryDue() const {
  const YDataType::TimeSpan sinceFailure = YDataType::DateTime::Now() - mLastFailureTime;
  return sinceFailure.GetTotalSeconds() >= RETRY_PERIOD_SECONDS;
}

std::string MissedMessages::Describe() const {
  return " Missed " + YBase::ToDecimalString(mCount) + " messages since " + mFailureStartTime.ToString() +
         " due to: " + mReason;
}

}  // namespace YLog
