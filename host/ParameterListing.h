#pragma once

class HostModel;
class QTextStream;

// Prints the simulated model's parameters (range, default, unit, value texts)
// and meters as a table.
void printParameterListing(const HostModel &model, QTextStream &out);
