// Entry of the welcome page (vtwelcome.html). The studio opens the page with
//   ?webChannelBaseUrl=<ws://127.0.0.1:PORT/?token=...>&lang=<studio language>
// and publishes the "vtwelcome" object on that channel.

import { openChannel, welcomeBridge, type WelcomeBridge } from './channel';
import { toRecentEntries } from './recent';
import { pickLanguage, stringsFor } from './strings';
import { bindWelcomeView } from './view';

function start(): void {
    const params = new URLSearchParams(window.location.search);
    const language = pickLanguage(params.get('lang'));
    document.documentElement.lang = language;

    let bridge: WelcomeBridge | null = null;
    const view = bindWelcomeView(document, stringsFor(language), {
        newProject: () => bridge?.newProject(),
        openProject: () => bridge?.openProject(),
        openRecent: (path) => bridge?.openRecent(path),
    });

    openChannel(params.get('webChannelBaseUrl'), {
        onLost: (reason) => {
            console.warn(`vtwelcome: ${reason}`);
            view.setState('offline');
        },
    })
        .then((connection) => {
            let connected: WelcomeBridge;
            try {
                connected = welcomeBridge(connection.channel);
            } catch (error) {
                connection.close();
                throw error;
            }
            bridge = connected;
            view.setVersion(connected.appVersion);
            view.setRecent(toRecentEntries(connected.recentFiles()));
            connected.onRecentFilesChanged(() => view.setRecent(toRecentEntries(connected.recentFiles())));
            view.setState('ready');
        })
        .catch((error: unknown) => {
            console.warn(`vtwelcome: ${error instanceof Error ? error.message : String(error)}`);
            view.setState('offline');
        });
}

if (document.readyState === 'loading') {
    document.addEventListener('DOMContentLoaded', start);
} else {
    start();
}
