// The sheet that asks for the name of a new record. Main thread.
#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;

class RecordNamePanel : public QDialog
{
    Q_OBJECT

public:
    // Proposes a name. The hint, if any, says what was wrong with the last one.
    RecordNamePanel(const QString &proposal, const QString &hint, QWidget *parent);

Q_SIGNALS:
    // The user pressed "OK" with this in the field, whatever it is.
    void chosen(const QString &name);

private:
    QLineEdit *m_nameField;
};
