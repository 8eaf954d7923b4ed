#pragma once

#include <vector>

class ORVD_Data;

// A source of morph data entries. Collection() appends what it finds to
// `list` (ownership passes to the list) and reports nothing on failure.
class ORVD_CollectionImp
{
public:
    virtual ~ORVD_CollectionImp() = default;

    virtual void Collection(std::vector<ORVD_Data *> &list) = 0;
};
