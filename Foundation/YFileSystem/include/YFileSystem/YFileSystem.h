#pragma once

#include <YFileSystem/Directory.h>
#include <YFileSystem/File.h>
#include <YFileSystem/FileFacts.h>
#include <YFileSystem/Path.h>
