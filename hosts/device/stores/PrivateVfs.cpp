#include "hosts/device/stores/PrivateVfs.h"

namespace chatsum::device {

PrivateVfs::PrivateVfs(const std::string& database)
    : system_(sqlite3_vfs_find(nullptr)),
      database_(database),
      journal_(database + "-journal"),
      wal_(database + "-wal") {
  vfs_.iVersion = 1;
  vfs_.szOsFile = system_->szOsFile;
  vfs_.mxPathname = system_->mxPathname;
  vfs_.zName = database_.c_str();  // no two copies have the same
  vfs_.pAppData = this;
  // SQLite's own files without a name would stand outside, too: what needs one fails.
  vfs_.xOpen = [](sqlite3_vfs* vfs, const char* path, sqlite3_file* file, int flags, int* outFlags) {
    const auto& self = *static_cast<PrivateVfs*>(vfs->pAppData);
    file->pMethods = nullptr;  // nothing to close when it is refused
    return self.isOwn(path) ? self.system_->xOpen(self.system_, path, file, flags, outFlags) : SQLITE_CANTOPEN;
  };
  vfs_.xDelete = [](sqlite3_vfs* vfs, const char* path, int syncFolder) {
    const auto& self = *static_cast<PrivateVfs*>(vfs->pAppData);
    return self.isBeside(path) ? self.system_->xDelete(self.system_, path, syncFolder) : SQLITE_IOERR_DELETE;
  };
  vfs_.xAccess = [](sqlite3_vfs* vfs, const char* path, int flags, int* answer) {
    const auto& self = *static_cast<PrivateVfs*>(vfs->pAppData);
    return self.isOwn(path) ? self.system_->xAccess(self.system_, path, flags, answer) : SQLITE_IOERR_ACCESS;
  };
  // Links on the way to the private folder stay in the path: the names are compared as they were given.
  vfs_.xFullPathname = [](sqlite3_vfs*, const char* path, int room, char* out) {
    sqlite3_snprintf(room, out, "%s", path);
    return SQLITE_OK;
  };
  // The rest touches no file. Without the calls that load code, SQLite loads none.
  vfs_.xRandomness = [](sqlite3_vfs* vfs, int length, char* out) {
    sqlite3_vfs* const system = static_cast<PrivateVfs*>(vfs->pAppData)->system_;
    return system->xRandomness(system, length, out);
  };
  vfs_.xSleep = [](sqlite3_vfs* vfs, int microseconds) {
    sqlite3_vfs* const system = static_cast<PrivateVfs*>(vfs->pAppData)->system_;
    return system->xSleep(system, microseconds);
  };
  vfs_.xCurrentTime = [](sqlite3_vfs* vfs, double* julianDay) {
    sqlite3_vfs* const system = static_cast<PrivateVfs*>(vfs->pAppData)->system_;
    return system->xCurrentTime(system, julianDay);
  };
  sqlite3_vfs_register(&vfs_, 0);
}

PrivateVfs::~PrivateVfs() { sqlite3_vfs_unregister(&vfs_); }

bool PrivateVfs::isOwn(const char* path) const { return path && (path == database_ || isBeside(path)); }

bool PrivateVfs::isBeside(const char* path) const { return path && (path == journal_ || path == wal_); }

}  // namespace chatsum::device
