// The few calls that the effect makes to the operating system.
// The same names on every system; one folder beside this header implements them for each. Nothing here
// depends on the C locale, and no exception except std::bad_alloc leaves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#ifndef _WIN32
#include <mutex>
#endif

namespace kovalune::platform {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

// The process's command line as one text, its arguments joined by one blank; empty if the system does not
// tell.
std::string commandLine();

// Whether a Shift key is held down now. Always false where there is no keyboard to ask, as on POSIX systems.
bool shiftKeyDown();

// The number of the active multibyte code page: kJapaneseCodePage for Japanese, 65001 for UTF-8. On POSIX systems the
// language of the locale decides between these two, whatever its encoding, because that is what the number is
// used for. On Windows it is 0 where characters are single bytes.
unsigned activeCodePage();

inline constexpr unsigned kJapaneseCodePage = 932;

// The room for a path, its end included, that hosts have and that the effect has.
inline constexpr std::size_t kPathBytes = 260;

// Puts the user's folder for settings into the buffer, ended by a NUL and without a separator at its end
// (only the root folder itself keeps its own). False, with an empty text in the buffer, if there is no such
// folder or if it does not fit in `size` bytes. The folder need not exist.
bool applicationDataFolder(char* buffer, std::size_t size);

// Why the call before, of those here that make or write something, could not do it: errno, on Windows what GetLastError
// gives. To be asked at once.
int lastError();

// Whether a folder of that name is there.
bool folderExists(const char* path);

// Whether anything of that name is there, a link that leads nowhere too; also where the system does not tell.
bool nameIsTaken(const char* path);

// Makes a folder and those above it that are missing, for this user's eyes where the system asks for rights. True if
// the folder is there afterwards; false, too, for an empty path.
bool createFolders(const char* path);

enum class Deletion { kDone, kMissing, kFailed };

// Deletes a file, or a link to one, never a folder.
Deletion deleteFile(const char* path);

// Deletes a folder. False, and the folder stays, if it is not empty.
bool removeFolder(const char* path);

// What the system knows a loaded library by: the one of that file, or else the one that holds this code. Null where
// neither is known, as on POSIX systems, where nothing asks for it.
void* moduleOfFile(const char* path);

// Profile files: lines "key=value" under lines "[section]".
//
// Sections and keys compare without case (ASCII only), the first of two equal ones counts. Blanks around
// names and values do not count; a line that starts with ';' is a comment; a line without '=' is nothing.
// Lines end in LF or CR LF, and a UTF-8 byte-order mark may stand first. The file's path is taken as it is.
// A file that is missing, unreadable or not a plain file reads as an empty one.
//
// On Windows the system's own profile functions do this. They differ where no file of ours comes: a number
// may be hexadecimal ("0x10"), a byte-order mark hides the first line, a relative path lies in the system's folder,
// a file whose path has more than 259 bytes is a missing one that can't be written, and a file is changed in place.
// Wine's read what follows a byte-order mark, and write every line anew: without blank lines and without blanks around
// names and values, all ended in CR LF.

// A profile is a small file: on POSIX systems what lies past this many bytes is treated as not there (so a
// line across the limit ends at it), and a file that is or would become larger is not written.
inline constexpr std::size_t kProfileSizeLimit = std::size_t{1} << 20;

// The decimal number that the value starts with: blanks, a sign, digits; the rest is ignored, and no digit is
// 0. It wraps as 32-bit arithmetic does: 4294967295 is -1. The fallback if there is no such key, if its value
// is empty or if a name is null.
int32_t profileInt(const char* section, const char* key, int32_t fallback, const char* file);

// The value, without the pair of equal quotes (' or ") that may enclose it. The fallback, without the spaces
// at its end, if there is no such key or if a name is null; a null fallback is an empty one. Either is cut to
// maxChars - 1 bytes, which may split a multibyte character, and at the first NUL: it is what a buffer of
// maxChars bytes would hold.
std::string profileString(const char* section, const char* key, const char* fallback, std::size_t maxChars,
                          const char* file);

// Sets a value; a null value deletes the key, a null key the whole section. The value is written as it is, so
// blanks around it and a pair of quotes are not read back. All other lines stay as they are, byte for byte;
// lines that are added end in CR LF. The file is replaced as a whole, so a reader sees the old or the new
// one; two writers at the same moment are not kept apart. False, and the file is as before, if it cannot be
// read or written, if its folder is missing, or if a name or the value cannot stand in a profile (a line
// break; an empty key, one with '=' or one that starts with ';' or '['; a section with ']'). True without
// writing if the file already says so.
bool writeProfileString(const char* section, const char* key, const char* value, const char* file);

// Mutual exclusion for std::lock_guard. The thread that is inside may enter again, and leaves as often: what it calls
// while inside may come back here. A static one is made while the library is loaded and deleted while it is unloaded.
class CriticalSection {
public:
    CriticalSection();
    ~CriticalSection(); // NOLINT(performance-trivially-destructible): that of Windows has work to do
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock();
    void unlock();

private:
#ifdef _WIN32
    void* section_[6]; // the system's, of 24 bytes on 32-bit Windows and 40 on 64-bit
#else
    std::recursive_mutex mutex_;
#endif
};

} // namespace kovalune::platform
