#pragma once

// Registers the artwork under ":/image/orvchstrip/". Safe to call repeatedly;
// the plug-in calls it when it is loaded, tests and benchmarks at start-up.
void initializeOrvChStripResources();
