// A typed view of the published welcome object, over the channel that common/channel.ts opens.

import { remoteObject, remoteSignal, remoteSlot } from '../common/channel';

export { ChannelError, openChannel, type ChannelConnection, type OpenChannelOptions } from '../common/channel';

/** What the welcome page may ask of the studio; mirrors the published "vtwelcome" object. */
export interface WelcomeBridge {
    readonly appVersion: string;
    /** Absolute project paths, newest first, as the host last reported them. */
    recentFiles(): unknown;
    onRecentFilesChanged(callback: () => void): void;
    newProject(): void;
    openProject(): void;
    openRecent(path: string): void;
}

export const welcomeObjectName = 'vtwelcome';

/** Checks the published object has what the page needs and gives it a typed face. */
export function welcomeBridge(channel: QWebChannel): WelcomeBridge {
    const object = remoteObject(channel, welcomeObjectName);
    const newProject = remoteSlot(object, welcomeObjectName, 'newProject');
    const openProject = remoteSlot(object, welcomeObjectName, 'openProject');
    const openRecent = remoteSlot(object, welcomeObjectName, 'openRecent');
    const changed = remoteSignal(object, welcomeObjectName, 'recentFilesChanged');
    const version = object['appVersion'];
    return {
        appVersion: typeof version === 'string' ? version : '',
        recentFiles: () => object['recentFiles'],
        onRecentFilesChanged: (callback) => changed.connect(() => callback()),
        newProject: () => newProject(),
        openProject: () => openProject(),
        openRecent: (path) => openRecent(path),
    };
}
