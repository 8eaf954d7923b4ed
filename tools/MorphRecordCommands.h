#pragma once

#include <QString>

struct ToolContext;

// "morph show" and "morph make": read and write the record of one morph data file.
namespace MorphRecordCommands {

// Whether `subcommand` (the word after "morph") is one of these commands.
bool handles(const QString &subcommand);
// Runs the command; context.arguments begin with the subcommand.
int run(ToolContext &context);

} // namespace MorphRecordCommands
