#pragma once

#include <YFileSystem/Descriptor.h>
#include <YFileSystem/Directory.h>
#include <YFileSystem/File.h>
#include <YFileSystem/FileCopy.h>
#include <YFileSystem/FileFacts.h>
#include <YFileSystem/Path.h>
#include <YFileSystem/UpdateableFile.h>
#include <YFileSystem/WriteableFile.h>
