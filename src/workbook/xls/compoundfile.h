#pragma once

#include <cstdint>

namespace workbook
{

class ByteSink;

/**
 * The container of an .xls: a small file system of 512-byte sectors, here with the one stream
 * "Workbook". The constructor leaves room for the header; write the stream to the sink, then call
 * finish(), which adds the tables and fills in the header.
 */
class CompoundFile
{
public:
    explicit CompoundFile(ByteSink &sink);

    void finish();

private:
    struct Layout;

    void writeDirectory(const Layout &layout);
    void writeAllocation(const Layout &layout);
    void writeOverflow(const Layout &layout);
    void fillHeader(const Layout &layout);
    void padTo(std::uint64_t size);

    ByteSink &sink;
};

} // namespace workbook
