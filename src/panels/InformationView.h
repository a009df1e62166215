#pragma once

#include <QUrl>
#include <QWidget>

class QLabel;
class QPushButton;
class WebViewModel;
struct ProductLinks;

/// A page of the product's web site about this version, with a word about donations below it. Without Qt
/// WebEngine the page is offered as a link that opens in the default browser.
class InformationView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(InformationView)

public:
    /// `context` is the "ac" value of the page's address: which part of the program asks.
    InformationView(const ProductLinks& links, const QString& context, QWidget* parent = nullptr);

    WebViewModel& model() const { return *m_model; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void buildPage();
    void onPageLinkClicked();
    void onDonationClicked();

    WebViewModel* m_model;
    QUrl m_donation;
};
