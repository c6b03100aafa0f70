// How an entry of the recent-projects list is shown: the project's name above the folder it lives
// in. The paths come from the studio's settings and may hold anything a file name can, so they are
// treated as plain text throughout.

export interface RecentEntry {
    /** The path exactly as the studio gave it; it is what goes back to openRecent(). */
    readonly path: string;
    /** File name without the project extension. */
    readonly name: string;
    /** The folder holding the file, as written in the path. */
    readonly folder: string;
}

const projectExtension = /\.(vetra|vetrapack)$/i;

export function describeRecent(path: string): RecentEntry {
    // Qt hands out '/' on every platform, but a settings file edited by hand on Windows may not.
    const cut = Math.max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
    const fileName = path.slice(cut + 1);
    let folder = cut < 0 ? '' : path.slice(0, cut);
    if (cut === 0 || /^[A-Za-z]:$/.test(folder)) {
        folder = path.slice(0, cut + 1); // keep the root recognisable: "/" or "C:\"
    }
    const stripped = fileName.replace(projectExtension, '');
    return { path, name: stripped === '' ? fileName : stripped, folder };
}

/**
 * Keeps the string entries of whatever the channel delivered: a property that is briefly
 * undefined or a host that sends something unexpected must not break the page.
 */
export function toRecentEntries(value: unknown): RecentEntry[] {
    if (!Array.isArray(value)) {
        return [];
    }
    return value.filter((item): item is string => typeof item === 'string' && item !== '').map(describeRecent);
}
