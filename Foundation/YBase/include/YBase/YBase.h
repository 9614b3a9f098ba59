#pragma once

#include <YBase/CancellationGuard.h>
#include <YBase/ExceptionImpl.h>
#include <YBase/FormatMessage.h>
#include <YBase/Localizer.h>
#include <YBase/Message.h>
#include <YBase/ModuleMainPtr.h>
#include <YBase/ReferenceCounted.h>
#include <YBase/ReturnString.h>
#include <YBase/SmartPtrI.h>
#include <YBase/StrongPtr.h>
#include <YBase/TextBuffer.h>
#include <YBase/TextConversion.h>
