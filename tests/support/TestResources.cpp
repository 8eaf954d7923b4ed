#include <QCoreApplication>

#include "ORVChStrip/resources/OrvResources.h"

// Every test program draws with the plug-in's artwork, as the plug-in does
// once it is loaded.
Q_COREAPP_STARTUP_FUNCTION(initializeOrvChStripResources)
