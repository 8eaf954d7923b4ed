#pragma once

// Registers the artwork under ":/image/orvchstrip/". Safe to call repeatedly;
// every control and panel calls it before loading artwork.
void initializeOrvChStripResources();
