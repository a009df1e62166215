#pragma once

#include <QUrl>
#include <QWidget>

class Preferences;
class QLabel;
class QToolButton;
struct ProductLinks;

/// The title bar before any light is known: the product name, the settings gear and the menu button, all
/// centred, because the first thing a new user has to do is connect to the bridge.
class WelcomeTitlebarView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WelcomeTitlebarView)

public:
    explicit WelcomeTitlebarView(QWidget* parent = nullptr);

Q_SIGNALS:
    /// The user wants the preferences window.
    void settingsRequested();
    /// The user pressed the menu button, `anchor`.
    void menuRequested(QWidget* anchor);

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyColours();

    QLabel* m_name;
    QToolButton* m_settings;
    QToolButton* m_menu;
};

/// The usual title bar: the product name, or while a review is asked for "Got a second?" with a heart, and a
/// settings icon and the menu button at the trailing end.
class RegularTitlebarView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RegularTitlebarView)

public:
    RegularTitlebarView(Preferences& preferences, const ProductLinks& links, QWidget* parent = nullptr);

Q_SIGNALS:
    /// The user wants the preferences window.
    void settingsRequested();
    /// The user pressed the menu button, `anchor`.
    void menuRequested(QWidget* anchor);

protected:
    void changeEvent(QEvent* event) override;

private:
    void onShowReviewRequestChanged();
    void onReviewClicked();
    void applyColours();

    Preferences& m_preferences;
    QUrl m_review;
    QLabel* m_name;
    QLabel* m_reviewText;
    QToolButton* m_heart;
    QToolButton* m_settingsButton;
    QToolButton* m_menuButton;
};
