#pragma once

#include <QDir>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <utility>

class QImage;
class QQuickItem;
class QQuickWindow;

namespace NelvoDevkit {

//! \brief The reason why a station of a tour fails.
class Missed
{
public:
    explicit Missed(QString what) : m_what(std::move(what)) {}
    const QString& what() const { return m_what; }

private:
    QString m_what;
};

//! Prints a line about the tour, and appends it to the file in NELVO_TOUR_LOG: the output of a host that a
//! batch file starts is lost.
void report(const QString& line);

//! \brief Acts as a user at the windows of this process: reads, clicks, types and takes pictures.
//!
//! Finds items by their object names. Each operation throws Missed when it times out.
class UiDriver
{
public:
    //! Saves pictures in that folder.
    explicit UiDriver(const QString& pictures);

    //! Runs `stations`, which end the application. If a station throws Missed, or if the application does not
    //! end in time afterwards, prints the reason and ends the application with status 1.
    void walk(const std::function<void()>& stations);

    //! Prints the station and uses its name for later pictures and failures.
    void arriveAt(const QString& station);

    void require(bool reached, const QString& what) const;
    void await(const std::function<bool()>& condition, const QString& what, int patienceMs = 30000) const;
    QQuickItem* awaitItem(const QString& name) const;
    void awaitText(const QString& item, const char* property, const QString& text) const;
    //! Waits for an item with that name and that value.
    QQuickItem* awaitItemWith(const QString& name, const char* property, const QString& value) const;
    //! The shown lines of the log.
    QStringList logLines() const;
    void awaitLogLine(const QString& text) const;
    //! Waits until the log shows its last line.
    void awaitNewestLine() const;

    //! Clicks an item when it has its position in the window.
    void click(const QString& item) const;
    //! The same with the item that has that name and that value.
    void click(const QString& item, const char* property, const QString& value) const;
    //! Clicks an item when it is enabled.
    void press(const QString& button) const;
    void fill(const QString& field, const char* property, const QString& text) const;
    void focusByTab(QQuickWindow* window, const QString& field) const;

    //! Waits until the window has drawn its current state.
    void awaitDrawn(QQuickWindow* window) const;
    //! Saves a picture of the screen when the window has drawn its current state.
    void takePicture(QQuickWindow* window) const;
    void save(const QImage& picture) const;
    //! Saves pictures of all visible windows after a failure.
    void pictureMiss() const;

private:
    const QDir m_pictures;
    QString m_station;
};

} // namespace NelvoDevkit
