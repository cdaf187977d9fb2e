#pragma once

#include <QtGlobal>

// Another program may cut a font file off while it is mapped here, as copying over it does. Where the system ends a
// program that reads what is gone, this makes the lost pages read as zeros as long as the guard lives: the font library
// takes those for a broken font. Made after the mapping, destroyed before it; any thread.
class MappingGuard
{
public:
    MappingGuard(const uchar* data, qint64 size);
    ~MappingGuard();
    Q_DISABLE_COPY(MappingGuard)

private:
    struct Range;
    Range* m_range;

    friend struct MappingGuardHandler;
};
