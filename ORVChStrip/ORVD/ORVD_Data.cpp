#include "ORVChStrip/ORVD/ORVD_Data.h"

#include <cstring>
#include <new>

namespace {

// Lower-casing as the C library does it in the C locale: only A-Z change.
// Works on the signed value so that bytes 0x80-0xFF stay negative.
int foldedByte(char byte)
{
    const int value = static_cast<signed char>(byte);
    return (value >= 'A' && value <= 'Z') ? value - 'A' + 'a' : value;
}

// Length of `name` cut to at most `limit` bytes without splitting a UTF-8
// sequence.
size_t utf8PrefixLength(const char *name, size_t limit)
{
    const size_t length = strnlen(name, limit + 1);
    if (length <= limit)
        return length;
    size_t cut = limit;
    while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80)
        --cut;
    return cut;
}

} // namespace

ORVD_Data::ORVD_Data()
{
    std::memset(m_name, 0, sizeof m_name);
}

ORVD_Data::~ORVD_Data()
{
    freeBuffer();
    for (ORVD_Data *child : m_dataList)
        delete child;
}

bool ORVD_Data::operator<(const ORVD_Data &other) const
{
    const bool folder = IsFolder();
    const bool otherFolder = other.IsFolder();
    if (folder != otherFolder)
        return folder;

    const char *a = GetName();
    const char *b = other.GetName();
    for (; *a != '\0' && *b != '\0'; ++a, ++b) {
        const int ca = foldedByte(*a);
        const int cb = foldedByte(*b);
        if (ca != cb)
            return ca < cb;
    }
    // The shorter name first; equal names are not ordered.
    return *a == '\0' && *b != '\0';
}

bool ORVD_Data::IsFolder() const
{
    return m_pDataBuffer == nullptr || m_dataSize == 0;
}

bool ORVD_Data::IsFolderOpen() const
{
    return m_folderOpen;
}

void ORVD_Data::SetFolderOpen(bool open)
{
    m_folderOpen = open;
}

const char *ORVD_Data::GetName() const
{
    return m_name;
}

int ORVD_Data::GetUniqueID(unsigned char *) const
{
    return 0;
}

const unsigned char *ORVD_Data::GetDataBuffer() const
{
    return m_pDataBuffer;
}

unsigned int ORVD_Data::GetDataSize() const
{
    return m_dataSize;
}

const std::vector<ORVD_Data *> &ORVD_Data::GetDataList() const
{
    return m_dataList;
}

void ORVD_Data::GetDataList(std::vector<ORVD_Data *> &out) const
{
    out = m_dataList;
}

std::vector<ORVD_Data *> &ORVD_Data::SetFolderName(const char *name)
{
    setName(name);
    return m_dataList;
}

unsigned char *ORVD_Data::SetFileData(const char *name, unsigned int size)
{
    setName(name);
    freeBuffer();
    if (size > 0) {
        m_pDataBuffer = new (std::nothrow) unsigned char[size];
        if (m_pDataBuffer)
            m_dataSize = size;
    }
    return m_pDataBuffer;
}

bool ORVD_Data::Small(const ORVD_Data *a, const ORVD_Data *b)
{
    return *a < *b;
}

void ORVD_Data::setName(const char *name)
{
    std::memset(m_name, 0, sizeof m_name);
    if (name)
        std::memcpy(m_name, name, utf8PrefixLength(name, MaxNameLength));
}

void ORVD_Data::freeBuffer()
{
    delete[] m_pDataBuffer;
    m_pDataBuffer = nullptr;
    m_dataSize = 0;
}
