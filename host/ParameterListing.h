#pragma once

class HostModel;
class ParameterMemory;
class QTextStream;

// Prints the simulated model's parameters (range, default, unit, value texts)
// and meters as a table.
void printParameterListing(const HostModel &model, QTextStream &out);

// Prints one "key=value text" line for every parameter of the strip on
// `channel`, in the model's order; a text parameter prints its text. Meant to
// be read by scripts and people alike.
void printParameterValues(const ParameterMemory &memory, int channel, QTextStream &out);
