#pragma once

#include <YResource/Bundle.h>
#include <YResource/FolderBundle.h>
#include <YResource/Language.h>
#include <YResource/Localizer.h>
#include <YResource/MemoryBundle.h>
#include <YResource/MessageFormat.h>
#include <YResource/MessageFormatter.h>
#include <YResource/MessageTemplate.h>
