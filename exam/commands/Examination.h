#pragma once

#include "commands/SettingsDesk.h"
#include "overlay/Notices.h"
#include "record/Recorder.h"
#include "service/Form.h"
#include "service/ServiceDesk.h"
#include "service/Session.h"
#include "service/StudyDesk.h"
#include "state/ExamState.h"

#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/PrecisionMouse.h>

#include <afxwin.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The window that shows the exam, as far as commands need it.
class ExamWindow
{
public:
    /// The owner of the windows that services open.
    virtual CWnd& Owner() = 0;
    /// Saves what the window shows as a PNG file. False when it could not be written.
    virtual bool SavePicture(const std::wstring& path) = 0;
    /// Paints the screen as it belongs into a movie.
    virtual void PaintMovie(CDC& dc) = 0;
    virtual void TogglePanel() = 0;
    /// Takes the control panel out of the window, or docks it again.
    virtual void FloatPanel() = 0;
    /// Shows the list of keys, or hides it.
    virtual void ToggleKeys() = 0;
    /// Lets the control panel's buttons be moved, or no longer.
    virtual void TogglePanelLock() = 0;
    /// Takes back what the user has changed on the control panel.
    virtual void ResetPanel() = 0;
    /// Asks the user; true for yes.
    virtual bool Ask(const CString& question) = 0;
    /// Asks whether to do what is most probably wanted; true for yes.
    virtual bool Offer(const CString& question) = 0;
    /// Tells the user something that is more than a line.
    virtual void Tell(const CString& text) = 0;
    /// Shows a file in its folder.
    virtual void ShowFile(const std::wstring& path) = 0;
    /// Asks the user to fill a form (AskForm).
    virtual bool Fill(const CString& title, std::vector<FormField>& fields,
                      const FormCheck& check) = 0;
    /// Asks the user for a recording to open; empty when the user cancels.
    virtual std::wstring ChooseImage() = 0;
    /// Opens the menu of recent files.
    virtual void ShowRecent() = 0;
    /// Shows the images of the study with thumbnails, or hides them.
    virtual void ToggleImages() = 0;
    /// Asks the user for one of these texts by a menu at the pointer; empty when the user cancels.
    virtual std::wstring ChooseOneOf(const std::vector<std::wstring>& texts) = 0;
    virtual void Close() = 0;

protected:
    ~ExamWindow() = default;
};

/// Moves a point in small steps by the keyboard, and puts it down.
class PrecisionKeys : private IPrecisionControl
{
public:
    PrecisionKeys() { PrecisionMouse::Register(this); }
    ~PrecisionKeys() { PrecisionMouse::Unregister(this); }
    PrecisionKeys(const PrecisionKeys&) = delete;
    PrecisionKeys& operator=(const PrecisionKeys&) = delete;

    /// False when no point is in hand.
    bool Move(int dx, int dy);
    bool Accept();

private:
    void SetHandler(IPrecisionHandler* handler) override { m_handler = handler; }

    IPrecisionHandler* m_handler = nullptr;
};

/// The ways to open the pages that belong to the status row; empty: there is no row.
struct StatusPages
{
    std::function<void()> row;     ///< what the row shows
    std::function<void()> devices; ///< the simulated devices
};

/// The things that commands work on: the exam's state, its recorder and the services. It tells the
/// user how recordings end.
class Examination : private IStateChangeConsumer
{
public:
    /// `folder`: the folder of recordings, pictures and archives. State and window outlive this
    /// object.
    Examination(ExamState& state, ExamWindow& window, const std::wstring& folder);

    ExamState& State() { return m_state; }
    const ExamState& State() const { return m_state; }
    ExamWindow& Window() { return m_window; }
    ServiceDesk& Service() { return m_service; }
    SettingsDesk& Settings() { return m_settings; }

    /// Sets the folder of recordings, pictures and archives.
    void SetFolder(const std::wstring& folder);

    /// Opens one of the status row's pages, as far as there is a status row.
    void ShowPage(std::function<void()> StatusPages::*page) const;
    void SetPages(const StatusPages& pages) { m_pages = pages; }

    /// Tells the user by the status line and a notice.
    void Report(NoticeKind kind, const CString& sentence);

    /// Begins a recording of raw frames or of a movie, or ends the current one.
    void ToggleRecording(bool isMovie);
    void EndRecording();
    /// Marks the frame that the running recording has taken last.
    void MarkRecording();
    /// Opens the recording that was finished last.
    void OpenFinished();
    /// True for a sentence that tells of it.
    bool TellsOfFinished(const CString& sentence) const;
    /// Does what a click on the sentence of the status line means: opens the recording that it
    /// tells of.
    void FollowStatus();

    /// Ends what is under way: an open box, a point in hand, or a recording.
    void Cancel();

    /// Closes the window. What would be lost is asked about before, and what is open is finished.
    void Leave();

    /// Begins a session: repairs the recordings that were cut off, and opens the study of the
    /// session before if that one did not end, or the one in a folder. While another exam runs, it
    /// begins a new study beside that one.
    void BeginSession(const std::wstring& userFolder, const std::wstring& study);
    /// Offers what was recovered of the session before, and the report of its crash. Otherwise a
    /// new study is begun.
    void OfferRecovery();
    /// Ends the session, because the program may be ended from now on.
    void EndSession();

    /// Packs the study as it is now, with all that belongs to it.
    void Pack();

    /// Unpacks the archive that was packed last, asks before it replaces files, and offers to open
    /// the study.
    void Unpack();

    /// Shows the next frame, and the newest one of a probe. A recording takes the one on display
    /// before, and all that a probe has made.
    void Advance();

    /// The milliseconds between two calls of Play; nothing while frames stand still. A recording
    /// lets them run.
    std::optional<unsigned> PlayInterval() const;

    /// Advances when the next frame is due by the clock. None is skipped.
    void Play();

    /// Opens the study in a folder, and keeps it there from now on. The user is told of what cannot
    /// be used.
    void OpenStudy(const std::wstring& folder);
    /// Keeps the study. False, and the user is told, when it cannot be written.
    bool SaveStudy();
    /// Keeps it when it has changed.
    void SaveChanges();

    void RenameSelected();
    /// Asks for a text or one of the terms, which the next press on the image places.
    void Annotate();
    /// Asks for one of the protocol's terms, which the next press places.
    void AnnotateWithTerm();
    /// Asks for the patient's data.
    void EditPatient();

    /// Puts a recording on display, and on the list of recent ones. The user is told of a file that
    /// cannot be used.
    void OpenImage(const std::wstring& path);
    void ChooseImage();
    /// The images of the study: by their names there, and the files beside it and among the
    /// recordings by their paths.
    std::vector<std::wstring> StudyImages() const;
    /// Puts one of them on display.
    void ShowStudyImage(const std::wstring& name);
    /// Removes one of them, with its marks, when the user wants that. A file of the study's folder
    /// or among the recordings goes to the recycle bin; others stay. False when nothing was done.
    bool RemoveStudyImage(const std::wstring& name);
    /// Moves the point in hand by steps of the precision mouse.
    void MovePrecisely(int dx, int dy);
    /// Puts the point in hand down, and takes up the next one.
    void NextPoint();

    /// Write the measurements as measurements-1.csv, and a report as report-1.html, and so on.
    void ExportTable();
    void ExportReport();

    /// Saves what the window shows as picture-1.png and so on, with the next number that is free.
    void SavePicture();

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    void FollowProbe();
    bool MoveToBin(const std::wstring& name, const std::wstring& path);
    bool IsOwnFile(const std::wstring& path) const;
    void BeginBeside(const std::wstring& study);
    void RepairRecordings(const std::wstring& folder);
    std::optional<CString> AskText(const CString& title, const CString& text);
    CString WhatWouldBeLost();
    void OfferStudy(const std::wstring& folder);
    void TellRecording();
    void RecordingFinished(const FinishedRecording& recording);

    ExamState& m_state;
    ExamWindow& m_window;
    using Clock = std::chrono::steady_clock;

    std::wstring m_folder;
    Clock::time_point m_due; // of the next frame
    Recorder m_recorder;
    std::wstring m_finished;  // the last recording; empty: none yet
    bool m_wasFrozen = false; // before the recording
    StudyDesk m_study;
    Session m_session;
    std::optional<LostSession> m_lost;    // until it was offered
    std::vector<std::wstring> m_repaired; // the recordings of this start
    PrecisionKeys m_precision;
    bool m_isAsking = false; // the question before closing is open
    ServiceDesk m_service;
    const ServiceDesk::Talk m_talk{
        [this](const CString& question) { return m_window.Ask(question); },
        [this](const CString& text) { m_window.Tell(text); },
        [this](const std::wstring& folder) { OfferStudy(folder); }};
    SettingsDesk m_settings{*this};
    StatusPages m_pages;
};

} // namespace exam
