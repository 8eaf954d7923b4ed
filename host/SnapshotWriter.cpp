#include "SnapshotWriter.h"

#include <QStringList>
#include <QTextStream>

#include "ORVChStrip/Chunk/AtomicFileWriter.h"
#include "ParameterListing.h"
#include "StateFile.h"

SnapshotWriter::SnapshotWriter(IComponent *component, const ParameterMemory &memory, int channel)
    : m_pComponent(component)
    , m_memory(memory)
    , m_channel(channel)
{ }

bool SnapshotWriter::write(QString *error) const
{
    QStringList problems;
    QString problem;
    if (!m_statePath.isEmpty() && !StateFile::save(m_pComponent, m_statePath, &problem))
        problems << problem;
    if (!m_spectrumPath.isEmpty() && m_spectrumText
        && !AtomicFileWriter::write(m_spectrumPath, m_spectrumText(), &problem))
        problems << problem;
    if (!m_parametersPath.isEmpty()) {
        QString values;
        QTextStream out(&values);
        printParameterValues(m_memory, m_channel, out);
        out.flush();
        if (!AtomicFileWriter::write(
                m_parametersPath, values.toUtf8(), &problem, AtomicFileWriter::Leftovers::RemoveStale))
            problems << problem;
    }
    *error = problems.join(QStringLiteral("; "));
    return problems.isEmpty();
}
