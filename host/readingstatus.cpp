// SPDX-FileCopyrightText: the VORNAK data display authors
// SPDX-License-Identifier: MIT
#include "host/readingstatus.h"

#include "host/backendreader.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace host {

namespace {

constexpr int interval = 100; // [ms]
constexpr int longestName = 240; // [pixels]
constexpr int barWidth = 120; // [pixels]

} // namespace

ReadingStatus::ReadingStatus(BackendReader &reader, QWidget *parent)
    : QWidget(parent)
    , reader(reader)
    , label(new QLabel)
    , bar(new QProgressBar)
    , button(new QPushButton(tr("Cancel")))
{
    setObjectName(QStringLiteral("readingStatus"));
    label->setObjectName(QStringLiteral("readingLabel"));
    label->setTextFormat(Qt::PlainText);
    bar->setObjectName(QStringLiteral("readingBar"));
    bar->setRange(0, 100);
    bar->setFixedWidth(barWidth);
    button->setObjectName(QStringLiteral("cancelReadingButton"));
    button->setToolTip(tr("Stop reading; what is shown stays"));
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(bar);
    layout->addWidget(button);
    hide();
    timer.setInterval(interval);
    connect(&timer, &QTimer::timeout, this, &ReadingStatus::showProgress);
    connect(button, &QPushButton::clicked, &reader, &BackendReader::cancel);
    connect(&reader, &BackendReader::started, this, &ReadingStatus::showReading);
    connect(&reader, &BackendReader::finished, this, &QWidget::hide);
    connect(&reader, &BackendReader::cancelled, this, &QWidget::hide);
}

void ReadingStatus::showReading(const BackendChoice &choice)
{
    const QString text = tr("Reading %1").arg(filesText(choice));
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideMiddle, longestName));
    label->setToolTip(text);
    bar->setAccessibleName(text);
    button->setAccessibleName(tr("Cancel: %1").arg(text));
    showProgress();
    show();
    timer.start();
}

void ReadingStatus::showProgress()
{
    bar->setValue(qRound(100.0 * reader.progress()));
    if (!reader.isReading()) {
        timer.stop();
        hide();
    }
}

} // namespace host
