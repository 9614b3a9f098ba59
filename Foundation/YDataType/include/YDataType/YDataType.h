#pragma once

#include <YDataType/DateTime.h>
#include <YDataType/ObjectCollection.h>
#include <YDataType/TimeSpan.h>
