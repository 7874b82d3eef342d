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

//! \brief Why a station of a tour fails.
class Missed
{
public:
    explicit Missed(QString what) : m_what(std::move(what)) {}
    const QString& what() const { return m_what; }

private:
    QString m_what;
};

//! Prints a line about the tour, and appends it to the file that NELVO_TOUR_LOG names: the output of a host
//! that a batch file starts goes nowhere.
void report(const QString& line);

//! \brief A person at the windows of this process: looks, clicks, types and takes pictures.
//!
//! Items are found by their object names. Each operation throws Missed when it times out.
class UiDriver
{
public:
    //! Pictures go to that folder.
    explicit UiDriver(const QString& pictures);

    //! Visits stations that end the application. If a station throws Missed, or the application does not end
    //! in time afterwards, prints the reason and ends the application with status 1.
    void walk(const std::function<void()>& stations);

    //! Prints the station. Pictures and misses from now on are named after it.
    void arriveAt(const QString& station);

    void require(bool reached, const QString& what) const;
    void await(const std::function<bool()>& condition, const QString& what, int patienceMs = 30000) const;
    QQuickItem* awaitItem(const QString& name) const;
    void awaitText(const QString& item, const char* property, const QString& text) const;
    //! Waits for an item of that name which has that value.
    QQuickItem* awaitItemWith(const QString& name, const char* property, const QString& value) const;
    //! What the log shows.
    QStringList logLines() const;
    void awaitLogLine(const QString& text) const;
    //! Waits until the log shows its end.
    void awaitNewestLine() const;

    //! Clicks an item once it has its place in the window.
    void click(const QString& item) const;
    //! The same with the item of that name which has that value.
    void click(const QString& item, const char* property, const QString& value) const;
    //! Clicks an item once it is enabled.
    void press(const QString& button) const;
    void fill(const QString& field, const char* property, const QString& text) const;
    void focusByTab(QQuickWindow* window, const QString& field) const;

    //! Waits until the window has drawn its present state.
    void awaitDrawn(QQuickWindow* window) const;
    //! Saves what stands on the screen, once the window has drawn its present state.
    void takePicture(QQuickWindow* window) const;
    void save(const QImage& picture) const;
    //! Saves all visible windows as they are now, after a miss.
    void pictureMiss() const;

private:
    const QDir m_pictures;
    QString m_station;
};

} // namespace NelvoDevkit
