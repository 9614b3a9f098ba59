#pragma once

#include <YLog/CmdLogTrace.h>
#include <YLog/ConfigurationHook.h>
#include <YLog/Destination.h>
#include <YLog/Destination_DebugOutput.h>
#include <YLog/Destination_DiskFile.h>
#include <YLog/Destination_KafkaLog.h>
#include <YLog/Destination_SystemLog.h>
#include <YLog/Dispatcher.h>
#include <YLog/Exception.h>
#include <YLog/Format.h>
#include <YLog/Initializer.h>
#include <YLog/Log.h>
#include <YLog/LogTrace.h>
#include <YLog/Logger.h>
#include <YLog/MessageBody.h>
#include <YLog/MessageHeader.h>
#include <YLog/Module.h>
#include <YLog/MsgLogTrace.h>
#include <YLog/Router.h>
#include <YLog/ScopeGuard.h>
#include <YLog/SensitiveData.h>
#include <YLog/ThreadContext.h>
#include <YLog/ThreadSpecificLogHeaders.h>
#include <YLog/Timestamp.h>
#include <YSynch/ReferenceCountedImpl.h>  // For clients that implement one of the interfaces.
