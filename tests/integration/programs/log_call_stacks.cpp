// A client's program that logs a message with a call stack in each of the ways that take a message ID. The
// text of each message is the name of the function that must be the first one in its call stack.

#include <YLog/YLog.h>

namespace orders {

// Each function counts after its call. If the call were its last action, the compiler could replace it by a
// jump, and the function would have no frame.
volatile int gsSteps = 0;

[[gnu::noinline]] void LogMessageByID(YLog::Router& router) {
  YLog::LogMessage(router, 1, YLog::GetMessageFormatter() << "LogMessageByID", "%1");
  gsSteps = gsSteps + 1;
}

[[gnu::noinline]] void LogStringByID(YLog::Router& router) {
  YLog::LogString(router, 2, "LogStringByID");
  gsSteps = gsSteps + 1;
}

[[gnu::noinline]] void LogMessageAndThrow(YLog::Router& router) {
  try {
    YLog::LogMessageAndThrowBaseException(router, 3, YLog::GetMessageFormatter() << "LogMessageAndThrow",
                                          "%1");
  } catch (const YBase::Message&) {
    gsSteps = gsSteps + 1;
  }
}

[[gnu::noinline]] void LogStringAndThrow(YLog::Router& router) {
  try {
    YLog::LogStringAndThrowBaseException(router, 4, "LogStringAndThrow");
  } catch (const YBase::Message&) {
    gsSteps = gsSteps + 1;
  }
}

[[gnu::noinline]] void LogByRouter(YLog::Router& router) {
  router.LogMessage("LogByRouter", 5, nullptr, nullptr, 0);
  gsSteps = gsSteps + 1;
}

[[gnu::noinline]] void LogStructuredByRouter(YLog::Router& router) {
  YBase::Message message("LogStructuredByRouter");
  message.SetDomainAndID(7, 6);
  router.LogMessage(message);
  gsSteps = gsSteps + 1;
}

}  // namespace orders

/// The argument is the path of the log file.
int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const YLog::Initializer initializer;
  const auto router = YLog::CreateRouter("Kernel", "Info", YSynch::LOCK_STACK_CATEGORY_OBJECT);
  const auto file = YLog::GetDestination_DiskFile(YBase::UTF8ToWideChar(argv[1]).c_str());
  constexpr unsigned IDS[] = {1, 2, 3, 4, 5, 6};
  file->SetCallstackMessageIDs(IDS, 6);
  YDataType::ObjectCollection<YLog::Destination> destinations;
  destinations.Add(file);
  router->GetDispatcher()->SetDestinations(destinations);

  orders::LogMessageByID(*router);
  orders::LogStringByID(*router);
  orders::LogMessageAndThrow(*router);
  orders::LogStringAndThrow(*router);
  orders::LogByRouter(*router);
  orders::LogStructuredByRouter(*router);
  return orders::gsSteps == 6 ? 0 : 1;
}
