// Which program this is. Main thread.
#pragma once

class QWidget;

void showAboutBox(QWidget *window);
