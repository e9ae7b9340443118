"use strict";

// Starts the report and switches views. Only the address determines what is shown.

const groupList = new GroupList();
const pageView = new PageView();
let listScroll = 0;

/**
 * @param {State} next
 * @param {"push" | "replace"} [how] whether the browser's way back leads to where we are
 */
function go(next, how = "push") {
  const address = addressOf(next);
  if (how === "push" && address !== location.hash) history.pushState(null, "", address);
  else history.replaceState(null, "", address);
  showState();
}

function showState() {
  const wasPage = pageView.node.isConnected;
  const isPage = isPageView(stateFromAddress());
  const lastGroup = pageView.group()?.id;
  state = stateFromAddress();
  if (isPage) {
    if (!wasPage) {
      listScroll = scrollY;
      groupList.node.remove();
      document.body.append(pageView.node);
      scrollTo(0, 0);
      pageView.toolbar.title.focus({ preventScroll: true });
    }
    void pageView.show();
    return;
  }
  document.title = "What changed";
  if (wasPage) {
    pageView.clear();
    pageView.node.remove();
  }
  if (!groupList.node.isConnected) document.body.append(groupList.node);
  groupList.show();
  if (wasPage) {
    scrollTo(0, listScroll);
    groupList.draw();
    if (lastGroup) groupList.focus(lastGroup);
  }
}

function goToList() {
  go({ ...state, page: null, group: "", change: null });
}

/** @param {number} index @param {number} step @param {number} count */
function stepped(index, step, count) {
  return Math.min(Math.max(index + step, 0), count - 1);
}

/** @param {number} step */
function stepChange(step) {
  const count = pageView.data?.changes.length ?? 0;
  if (count > 0) go({ ...state, change: stepped(pageView.chosen(), step, count) }, "replace");
}

/** The next page of the group, or of the report if no group was chosen. @param {number} step */
function stepPage(step) {
  const group = groupById.get(state.group);
  const pages = group ? group.drawn : report.pages.map((page) => page.page);
  const next = pages[stepped(pages.indexOf(state.page ?? -1), step, pages.length)];
  if (next !== undefined && next !== state.page) go({ ...state, page: next, change: null });
}

/** The next group that passes the filter. @param {number} step */
function stepGroup(step) {
  const list = filteredGroups(state.filter);
  const here = pageView.group()?.id;
  const at = list.findIndex((group) => group.id === here);
  const next = list[stepped(at, step, list.length)];
  if (next && next.id !== here) go(stateOfGroup(next));
}

document.body.append(makeTints());
addEventListener("popstate", showState);
addEventListener("hashchange", showState);
addEventListener("keydown", press);
document.addEventListener("click", (event) => {
  const link = event.target instanceof Element ? event.target.closest("a[href^='#']") : null;
  if (link && !event.ctrlKey && !event.metaKey && !event.shiftKey) {
    event.preventDefault();
    history.pushState(null, "", link.getAttribute("href"));
    showState();
  }
});
showState();
