#pragma once

#include <YFileSystem/Directory.h>
#include <YFileSystem/File.h>
#include <YFileSystem/Path.h>
#include <YFileSystem/UpdateableFile.h>
#include <YFileSystem/WriteableFile.h>
