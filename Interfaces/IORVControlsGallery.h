#pragma once

#include <QtPlugin>

class QWidget;
class IModelInfo;
class IMemAPI;

// Offered by the plug-in object next to IQXEffect: a page that shows every
// control of the editor's library, each bound to a parameter of the host's
// memory and the meters fed from the host's meter notifier. Hosts use it to
// review the controls; the page is owned by `parent`.
class IORVControlsGallery
{
public:
    virtual QWidget *createControlsGallery(QWidget *parent, IModelInfo *modelInfo, IMemAPI *memAPI) = 0;

protected:
    ~IORVControlsGallery() = default;
};

#define IORVControlsGallery_iid "IORVControlsGallery/1.0"
Q_DECLARE_INTERFACE(IORVControlsGallery, IORVControlsGallery_iid)
