// The notifications of the signed-in user's region that the user has not read yet. Main thread;
// the service calls block it.
#pragma once

namespace NotificationPopUps {

// Shows each as an alert, newest first, once per user: it is marked read before it is shown, and
// one that cannot be marked is left for the next time. The root user has none.
void showNotification();

}
