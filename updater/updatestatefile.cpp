#include "updater/updatestatefile.h"

#include "updater/updatekeys.h"

#include <QFile>
#include <QJsonDocument>

UpdateStateFile::UpdateStateFile(const QString& path) : m_path(path)
{
    QFile file(m_path);
    if (file.open(QIODevice::ReadOnly))
        json = QJsonDocument::fromJson(file.readAll()).object();
}

UpdateStateFile::~UpdateStateFile()
{
    if (!saved)
        write();
}

UpdateState UpdateStateFile::state() const
{
    return static_cast<UpdateState>(json.value(UpdateKeys::UpdateState).toInt());
}

void UpdateStateFile::setState(UpdateState state)
{
    json.insert(UpdateKeys::UpdateState, static_cast<int>(state));
}

void UpdateStateFile::write() const
{
    QFile file(m_path);
    if (file.open(QIODevice::WriteOnly))
        file.write(QJsonDocument(json).toJson());
}
