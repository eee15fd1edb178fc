#include "data/embedded/memory_files.h"

#include <sqlite3.h>

#include <atomic>
#include <cstring>
#include <map>
#include <mutex>
#include <new>
#include <vector>

namespace ondrel::memory_files {
namespace {

// The bytes of a file and who holds which lock: any number of readers, one handle that prepares a change
// (reserved), and that handle alone while it writes (exclusive).
struct MemoryFile {
  std::mutex mutex;
  std::string bytes;
  int readers = 0;
  const void* reservedBy = nullptr;
  bool writerWaits = false;  // pending: no new readers
};

struct OpenFile {
  sqlite3_file engine;
  std::shared_ptr<MemoryFile> file;
  int lock = SQLITE_LOCK_NONE;
};

std::mutex registryMutex;

std::map<std::string, std::shared_ptr<MemoryFile>>& registry() {
  static std::map<std::string, std::shared_ptr<MemoryFile>> files;
  return files;
}

std::shared_ptr<MemoryFile> find(const std::string& name) {
  const std::scoped_lock guard(registryMutex);
  const auto found = registry().find(name);
  return found == registry().end() ? nullptr : found->second;
}

OpenFile& opened(sqlite3_file* file) {
  return *reinterpret_cast<OpenFile*>(file);
}

int unlock(sqlite3_file* file, int level);

int close(sqlite3_file* file) {
  unlock(file, SQLITE_LOCK_NONE);
  opened(file).~OpenFile();
  return SQLITE_OK;
}

int read(sqlite3_file* file, void* buffer, int amount, sqlite3_int64 offset) {
  MemoryFile& memory = *opened(file).file;
  const std::scoped_lock guard(memory.mutex);
  const auto start = static_cast<size_t>(offset), wanted = static_cast<size_t>(amount);
  const size_t available = start < memory.bytes.size() ? std::min(wanted, memory.bytes.size() - start) : 0;
  if (available > 0) std::memcpy(buffer, memory.bytes.data() + start, available);
  if (available == wanted) return SQLITE_OK;
  std::memset(static_cast<char*>(buffer) + available, 0, wanted - available);
  return SQLITE_IOERR_SHORT_READ;
}

int write(sqlite3_file* file, const void* buffer, int amount, sqlite3_int64 offset) {
  MemoryFile& memory = *opened(file).file;
  const std::scoped_lock guard(memory.mutex);
  const size_t end = static_cast<size_t>(offset) + static_cast<size_t>(amount);
  if (memory.bytes.size() < end) memory.bytes.resize(end);
  std::memcpy(memory.bytes.data() + offset, buffer, static_cast<size_t>(amount));
  return SQLITE_OK;
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
  MemoryFile& memory = *opened(file).file;
  const std::scoped_lock guard(memory.mutex);
  memory.bytes.resize(static_cast<size_t>(size));
  return SQLITE_OK;
}

int sync(sqlite3_file*, int) {
  return SQLITE_OK;
}

int size(sqlite3_file* file, sqlite3_int64* result) {
  MemoryFile& memory = *opened(file).file;
  const std::scoped_lock guard(memory.mutex);
  *result = static_cast<sqlite3_int64>(memory.bytes.size());
  return SQLITE_OK;
}

int lock(sqlite3_file* file, int level) {
  OpenFile& handle = opened(file);
  if (level <= handle.lock) return SQLITE_OK;
  MemoryFile& memory = *handle.file;
  const std::scoped_lock guard(memory.mutex);
  if (level == SQLITE_LOCK_SHARED) {
    if (memory.writerWaits) return SQLITE_BUSY;
    ++memory.readers;
  } else {
    if (memory.reservedBy && memory.reservedBy != file) return SQLITE_BUSY;
    memory.reservedBy = file;
    if (level == SQLITE_LOCK_EXCLUSIVE) {
      memory.writerWaits = true;
      handle.lock = SQLITE_LOCK_PENDING;
      if (memory.readers > 1) return SQLITE_BUSY;
    }
  }
  handle.lock = level;
  return SQLITE_OK;
}

int unlock(sqlite3_file* file, int level) {
  OpenFile& handle = opened(file);
  if (level >= handle.lock) return SQLITE_OK;
  MemoryFile& memory = *handle.file;
  const std::scoped_lock guard(memory.mutex);
  if (handle.lock > SQLITE_LOCK_SHARED && memory.reservedBy == file) {
    memory.reservedBy = nullptr;
    memory.writerWaits = false;
  }
  if (level == SQLITE_LOCK_NONE) --memory.readers;
  handle.lock = level;
  return SQLITE_OK;
}

int checkReserved(sqlite3_file* file, int* result) {
  MemoryFile& memory = *opened(file).file;
  const std::scoped_lock guard(memory.mutex);
  *result = memory.reservedBy != nullptr;
  return SQLITE_OK;
}

int control(sqlite3_file*, int, void*) {
  return SQLITE_NOTFOUND;
}

int sectorSize(sqlite3_file*) {
  return 4096;
}

int characteristics(sqlite3_file*) {
  return SQLITE_IOCAP_ATOMIC | SQLITE_IOCAP_SAFE_APPEND | SQLITE_IOCAP_SEQUENTIAL |
         SQLITE_IOCAP_POWERSAFE_OVERWRITE;
}

sqlite3_io_methods methods() {
  sqlite3_io_methods result{};
  result.iVersion = 1;
  result.xClose = close;
  result.xRead = read;
  result.xWrite = write;
  result.xTruncate = truncate;
  result.xSync = sync;
  result.xFileSize = size;
  result.xLock = lock;
  result.xUnlock = unlock;
  result.xCheckReservedLock = checkReserved;
  result.xFileControl = control;
  result.xSectorSize = sectorSize;
  result.xDeviceCharacteristics = characteristics;
  return result;
}

const sqlite3_io_methods kMethods = methods();

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  file->pMethods = nullptr;
  if (!name || !(flags & SQLITE_OPEN_MAIN_DB)) return SQLITE_CANTOPEN;
  auto memory = find(name);
  if (!memory) return SQLITE_CANTOPEN;
  auto* handle = new (file) OpenFile;
  handle->engine.pMethods = &kMethods;
  handle->file = std::move(memory);
  if (outFlags) *outFlags = flags;
  return SQLITE_OK;
}

int removeFile(sqlite3_vfs*, const char*, int) {
  return SQLITE_OK;
}

int access(sqlite3_vfs*, const char*, int, int* result) {
  *result = 0;  // there are no journals to recover from
  return SQLITE_OK;
}

int fullPath(sqlite3_vfs*, const char* name, int size, char* result) {
  sqlite3_snprintf(size, result, "%s", name);
  return SQLITE_OK;
}

// A change of contents that no transaction made: the counter that handles look at before they trust what
// they have cached gets a value that it never had.
void markChanged(std::string& bytes) {
  constexpr size_t kChangeCounter = 24, kValidFor = 92, kHeader = 100;
  constexpr std::uint32_t kApart = 1U << 16;
  static std::atomic<std::uint32_t> counter{kApart};
  if (bytes.size() < kHeader) return;
  const std::uint32_t value = counter.fetch_add(kApart);
  for (const size_t place : {kChangeCounter, kValidFor})
    for (size_t k = 0; k < 4; ++k) bytes[place + k] = static_cast<char>(value >> (24 - 8 * k) & 0xFF);
}

}  // namespace

void install() {
  static const bool installed = [] {
    sqlite3_vfs* host = sqlite3_vfs_find(nullptr);
    static sqlite3_vfs vfs = *host;  // time, sleep and randomness are the host's
    vfs.iVersion = 1;
    vfs.szOsFile = sizeof(OpenFile);
    vfs.pNext = nullptr;
    vfs.zName = kFileSystem;
    vfs.xOpen = open;
    vfs.xDelete = removeFile;
    vfs.xAccess = access;
    vfs.xFullPathname = fullPath;
    return sqlite3_vfs_register(&vfs, 0) == SQLITE_OK;
  }();
  static_cast<void>(installed);
}

void create(const std::string& name, std::string_view contents) {
  auto file = std::make_shared<MemoryFile>();
  file->bytes = contents;
  const std::scoped_lock guard(registryMutex);
  registry()[name] = std::move(file);
}

void replace(const std::string& name, std::string_view contents) {
  const auto file = find(name);
  const std::scoped_lock guard(file->mutex);
  file->bytes = contents;
  markChanged(file->bytes);
}

std::string contents(const std::string& name) {
  const auto file = find(name);
  const std::scoped_lock guard(file->mutex);
  return file->bytes;
}

void remove(const std::string& name) {
  const std::scoped_lock guard(registryMutex);
  registry().erase(name);
}

}  // namespace ondrel::memory_files
