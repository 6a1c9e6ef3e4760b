// What the effect's profile functions for Windows ask of the system, answered by WindowsProfile.cpp: with these and that, they
// run where the fuzz targets do.
#pragma once

#include <cstdint>

using DWORD = uint32_t;
using UINT = unsigned;
using BOOL = int;
#define FALSE 0
#define TRUE 1
#define MAX_PATH 260

DWORD GetFullPathNameA(const char* path, DWORD size, char* buffer, char** name);
UINT GetPrivateProfileIntA(const char* section, const char* key, int32_t fallback, const char* file);
DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* fallback, char* buffer,
                               DWORD size, const char* file);
BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* file);
