#include "Destinations/MissedMessages.h"

#include <limits>
#include <utility>

#include <YBase/NumberText.h>
#include <YDataType/MonotonicTime.h>

namespace YLog {

namespace {

constexpr std::chrono::seconds RETRY_PERIOD(300);

}  // namespace

void MissedMessages::Begin(std::string reason, int count) {
  mReason = std::move(reason);
  mCount = count;
  SetLastFailureTimeToNow();
  mFailureStartTime = mLastFailureTime;
}

void MissedMessages::CountDropped() noexcept {
  if (mCount < std::numeric_limits<int>::max()) ++mCount;
}

void MissedMessages::RetryFailed() {
  SetLastFailureTimeToNow();
  CountDropped();
}

void MissedMessages::Clear() noexcept {
  mReason.clear();
  mCount = 0;
}

bool MissedMessages::IsRetryDue() const {
  if (!mLastFailureMoment || YDataType::GetMonotonicTime() - *mLastFailureMoment >= RETRY_PERIOD) return true;
  const YDataType::TimeSpan sinceFailure = YDataType::DateTime::Now() - mLastFailureTime;
  return sinceFailure.GetTotalSeconds() >= RETRY_PERIOD.count();
}

void MissedMessages::SetLastFailureTimeToNow() {
  mLastFailureTime = YDataType::DateTime::Now();
  mLastFailureMoment = YDataType::GetMonotonicTime();
}

std::string MissedMessages::Describe() const {
  return " Missed " + YBase::ToDecimalString(mCount) + " messages since " + mFailureStartTime.ToString() +
         " due to: " + mReason;
}

}  // namespace YLog
