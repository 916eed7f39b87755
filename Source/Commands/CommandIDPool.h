#pragma once

#include <vector>

/// Hands out command numbers of a fixed range to menus that are built at run time, and takes them
/// back. The number released last is handed out next. Main thread only.
class CommandIDPool {
public:
    /// The numbers from `first` to `first` + `count` - 1; the highest goes out first.
    CommandIDPool(unsigned int first, long count);
    virtual ~CommandIDPool() = default;

    /// An empty pool says so on standard output and ends the process.
    unsigned int GetNextID();

    /// Takes a number back. One outside the range is reported on standard output and ignored; the
    /// number just behind the range passes. A number released twice is handed out twice.
    void ReleaseID(unsigned int id);

private:
    std::vector<unsigned int> fFreeIDs;
    unsigned int fFirstID;
    unsigned int fCount;
};
