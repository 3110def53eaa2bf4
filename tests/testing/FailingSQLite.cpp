#include "testing/FailingSQLite.h"

#include <QByteArray>

#include <sqlite3.h>

namespace mirel::testing {

namespace {

FailureCountdown statements;
FailureCountdown fileOperations;

// Reads and functions are parts of a statement; the others stand for it. A rollback does not fail but by an
// authorizer like this one, and would leave a transaction open that nobody can end.
int authorize(void*, int action, const char* argument, const char*, const char*, const char*)
{
    if (action == SQLITE_READ || action == SQLITE_FUNCTION)
        return SQLITE_OK;
    if (action == SQLITE_TRANSACTION && qstrcmp(argument, "ROLLBACK") == 0)
        return SQLITE_OK;
    return statements.failsNow() ? SQLITE_DENY : SQLITE_OK;
}

int watchStatements(sqlite3* database, const char**, const sqlite3_api_routines*)
{
    return sqlite3_set_authorizer(database, authorize, nullptr);
}

// A file of the wrapped file system stands in the memory behind this one.
struct File
{
    sqlite3_file base;
    sqlite3_file* wrapped;
};

sqlite3_file* wrappedFile(sqlite3_file* file)
{
    return reinterpret_cast<File*>(file)->wrapped;
}

sqlite3_vfs* wrappedSystem = nullptr;

int closeFile(sqlite3_file* file)
{
    return wrappedFile(file)->pMethods->xClose(wrappedFile(file));
}
int readFile(sqlite3_file* file, void* buffer, int size, sqlite3_int64 offset)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_READ;
    return wrappedFile(file)->pMethods->xRead(wrappedFile(file), buffer, size, offset);
}
int writeFile(sqlite3_file* file, const void* buffer, int size, sqlite3_int64 offset)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_WRITE;
    return wrappedFile(file)->pMethods->xWrite(wrappedFile(file), buffer, size, offset);
}
int truncateFile(sqlite3_file* file, sqlite3_int64 size)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_TRUNCATE;
    return wrappedFile(file)->pMethods->xTruncate(wrappedFile(file), size);
}
int syncFile(sqlite3_file* file, int flags)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_FSYNC;
    return wrappedFile(file)->pMethods->xSync(wrappedFile(file), flags);
}
int fileSize(sqlite3_file* file, sqlite3_int64* size)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_FSTAT;
    return wrappedFile(file)->pMethods->xFileSize(wrappedFile(file), size);
}
int lockFile(sqlite3_file* file, int level)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_LOCK;
    return wrappedFile(file)->pMethods->xLock(wrappedFile(file), level);
}
int unlockFile(sqlite3_file* file, int level)
{
    return wrappedFile(file)->pMethods->xUnlock(wrappedFile(file), level);
}
int checkReservedLock(sqlite3_file* file, int* isReserved)
{
    return wrappedFile(file)->pMethods->xCheckReservedLock(wrappedFile(file), isReserved);
}
int controlFile(sqlite3_file* file, int operation, void* argument)
{
    return wrappedFile(file)->pMethods->xFileControl(wrappedFile(file), operation, argument);
}
int sectorSize(sqlite3_file* file)
{
    return wrappedFile(file)->pMethods->xSectorSize(wrappedFile(file));
}
int deviceCharacteristics(sqlite3_file* file)
{
    return wrappedFile(file)->pMethods->xDeviceCharacteristics(wrappedFile(file));
}
int mapSharedMemory(sqlite3_file* file, int region, int size, int extend, void volatile** address)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_SHMMAP;
    return wrappedFile(file)->pMethods->xShmMap(wrappedFile(file), region, size, extend, address);
}
int lockSharedMemory(sqlite3_file* file, int offset, int count, int flags)
{
    return wrappedFile(file)->pMethods->xShmLock(wrappedFile(file), offset, count, flags);
}
void sharedMemoryBarrier(sqlite3_file* file)
{
    wrappedFile(file)->pMethods->xShmBarrier(wrappedFile(file));
}
int unmapSharedMemory(sqlite3_file* file, int deletes)
{
    return wrappedFile(file)->pMethods->xShmUnmap(wrappedFile(file), deletes);
}

constexpr sqlite3_io_methods methods{
    2,
    closeFile,
    readFile,
    writeFile,
    truncateFile,
    syncFile,
    fileSize,
    lockFile,
    unlockFile,
    checkReservedLock,
    controlFile,
    sectorSize,
    deviceCharacteristics,
    mapSharedMemory,
    lockSharedMemory,
    sharedMemoryBarrier,
    unmapSharedMemory,
    nullptr,
    nullptr,
};

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags)
{
    auto* own = reinterpret_cast<File*>(file);
    own->base.pMethods = nullptr;
    own->wrapped = reinterpret_cast<sqlite3_file*>(own + 1);
    if (fileOperations.failsNow())
        return SQLITE_CANTOPEN;
    const int result = wrappedSystem->xOpen(wrappedSystem, name, own->wrapped, flags, outFlags);
    if (own->wrapped->pMethods)
        own->base.pMethods = &methods;
    return result;
}

int deleteFile(sqlite3_vfs*, const char* name, int syncsDirectory)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_DELETE;
    return wrappedSystem->xDelete(wrappedSystem, name, syncsDirectory);
}

int accessFile(sqlite3_vfs*, const char* name, int flags, int* result)
{
    if (fileOperations.failsNow())
        return SQLITE_IOERR_ACCESS;
    return wrappedSystem->xAccess(wrappedSystem, name, flags, result);
}

void installFileSystem()
{
    wrappedSystem = sqlite3_vfs_find(nullptr);
    static sqlite3_vfs system = *wrappedSystem;
    system.pNext = nullptr;
    system.zName = "failing";
    system.szOsFile = static_cast<int>(sizeof(File)) + wrappedSystem->szOsFile;
    system.xOpen = openFile;
    system.xDelete = deleteFile;
    system.xAccess = accessFile;
    sqlite3_vfs_register(&system, 1);
}

} // namespace

FailureCountdown& failingStatements()
{
    static const int installed = sqlite3_auto_extension(reinterpret_cast<void (*)()>(watchStatements));
    Q_UNUSED(installed)
    return statements;
}

FailureCountdown& failingFileOperations()
{
    static const bool installed = (installFileSystem(), true);
    Q_UNUSED(installed)
    return fileOperations;
}

} // namespace mirel::testing
