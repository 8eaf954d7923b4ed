#pragma once

#include <vector>

// One node of the morph data catalogue: a folder, or one morph data file whose
// whole contents are kept as an opaque byte block. A node owns its buffer and
// its children.
class ORVD_Data
{
public:
    // Bytes of the name, not counting the terminator.
    static constexpr unsigned int MaxNameLength = 255;
    // Length of the unique id that stored selections carry.
    static constexpr unsigned int UniqueIDLength = 100;

    ORVD_Data();
    virtual ~ORVD_Data();

    ORVD_Data(const ORVD_Data &) = delete;
    ORVD_Data &operator=(const ORVD_Data &) = delete;

    // Display order: folders first, then names compared byte by byte with the
    // ASCII letters folded to lower case and every byte taken as signed, so
    // names that begin with a non-ASCII character come before all ASCII names.
    virtual bool operator<(const ORVD_Data &other) const;

    virtual bool IsFolder() const;
    virtual bool IsFolderOpen() const;
    virtual void SetFolderOpen(bool open);
    virtual const char *GetName() const;
    // Entries carry no unique id: writes nothing and returns 0. Callers
    // compare against the all-zero id of UniqueIDLength bytes.
    virtual int GetUniqueID(unsigned char *out) const;
    virtual const unsigned char *GetDataBuffer() const;
    virtual unsigned int GetDataSize() const;
    virtual const std::vector<ORVD_Data *> &GetDataList() const;
    // Copies the child pointers; the copy does not own them.
    virtual void GetDataList(std::vector<ORVD_Data *> &out) const;
    // Makes this node a folder; returns the children for the scan to fill.
    virtual std::vector<ORVD_Data *> &SetFolderName(const char *name);
    // Makes this node a file of `size` bytes; returns the buffer for the scan
    // to fill, or null when no buffer of that size could be had.
    virtual unsigned char *SetFileData(const char *name, unsigned int size);

    // The comparison every sort of entries uses.
    static bool Small(const ORVD_Data *a, const ORVD_Data *b);

private:
    void setName(const char *name);
    void freeBuffer();

    char m_name[MaxNameLength + 1];
    unsigned char *m_pDataBuffer = nullptr;
    unsigned int m_dataSize = 0;
    std::vector<ORVD_Data *> m_dataList;
    bool m_folderOpen = false;
};
