#pragma once

#include "service/Settings.h"

namespace exam {

class Examination;

/// Lets the settings take effect at once, and keeps them.
class SettingsDesk
{
public:
    /// The exam outlives this object.
    explicit SettingsDesk(Examination& exam) : m_exam(exam) {}

    const Settings& InEffect() const { return m_inEffect; }

    /// Lets settings take effect, without keeping them.
    void Use(const Settings& settings);

    /// Lets settings take effect and keeps them. False, and the user is told, when they cannot be
    /// kept.
    bool Change(const Settings& settings);

    /// Asks the user for them in a form.
    void Edit();

    /// Changes to the other language.
    void NextLanguage();

    /// Writes all settings as settings-1.ini and so on into the folder of the recordings.
    void Export();

    /// Takes the shipped settings, when the user wants that.
    void Reset();

private:
    Examination& m_exam;
    Settings m_inEffect;
};

} // namespace exam
