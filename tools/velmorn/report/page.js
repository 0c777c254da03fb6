// Puts the view into the page, with its controls; and opens everything for printing.
(function () {
  'use strict';

  const report = window.velmornReport;
  const byId = (id) => document.getElementById(id);

  const kHelp = 'Drag to turn, drag with the right button or two fingers to move; click the view ' +
      'first to zoom with the wheel. Keys: arrows turn, Shift and arrows move, + and − zoom, ' +
      '0 resets.';

  function labelled(text, control) {
    const label = document.createElement('label');
    label.append(control, document.createTextNode(text));
    return label;
  }

  function addToggle(bar, text, isOn, change) {
    const box = document.createElement('input');
    box.type = 'checkbox';
    box.checked = isOn;
    box.addEventListener('change', () => change(box.checked));
    bar.append(labelled(text, box));
    change(isOn);
  }

  // Choices are [value, text].
  function addChoice(bar, name, choices, change) {
    const select = document.createElement('select');
    select.setAttribute('aria-label', name);
    for (const [value, text] of choices) select.append(new Option(text, value));
    select.addEventListener('change', () => change(select.value));
    bar.append(select);
  }

  function addButton(bar, text, press) {
    const button = document.createElement('button');
    button.type = 'button';
    button.textContent = text;
    button.addEventListener('click', press);
    bar.append(button);
  }

  function addBoardChoice(bar, data, boards, view) {
    const shots = [...new Set(data.boards.map((board) => board.shot))].sort((a, b) => a - b);
    if (shots.length < 2) return;
    const choices = [['', 'all shots']].concat(shots.map((shot) => [shot, 'shot ' + shot]));
    addChoice(bar, 'Boards of', choices, (value) => {
      for (const drawn of boards.children)
        drawn.visible = value === '' || drawn.userData.shot === Number(value);
      view.render();
    });
  }

  function addCloudChoice(bar, cloud, view) {
    const attributes = cloud.userData.attributes;
    if (!attributes.own || !attributes.camera) return;
    addChoice(bar, 'Colours of the cloud', [['own', 'own colours'], ['camera', 'colour by camera']],
              (value) => {
                cloud.geometry.setAttribute('color', attributes[value]);
                view.render();
              });
  }

  function addControls(bar, data, built, view) {
    const show = (part) => (isShown) => {
      built.parts[part].visible = isShown;
      view.render();
    };
    addToggle(bar, 'Names', true, view.showNames);
    if (data.boards.length > 0) {
      addToggle(bar, 'Boards', true, show('boards'));
      addBoardChoice(bar, data, built.parts.boards, view);
    }
    if (data.cloud) {
      addToggle(bar, 'Cloud', true, show('cloud'));
      addCloudChoice(bar, built.parts.cloud, view);
    }
    addToggle(bar, 'Links', true, show('links'));
    addToggle(bar, 'Grid', true, show('grid'));
    addToggle(bar, 'Base axes', true, (isShown) => {
      view.showAxisNames(isShown);
      show('axes')(isShown);
    });
    const views = document.createElement('div');
    views.className = 'views';
    addButton(views, 'Top view', () => view.lookFrom(report.looks.above));
    addButton(views, 'Side view', () => view.lookFrom(report.looks.side));
    addButton(views, 'Reset', () => view.lookFrom(report.looks.start));
    bar.append(views);
  }

  function addScale(stage, data) {
    const note = document.createElement('div');
    note.className = 'scale';
    note.textContent = 'grid ' + Number(data.cell.toPrecision(6));
    stage.append(note);
  }

  // Colours that depend on light, dark and paper.
  function recolour(built) {
    built.parts.grid.material.color.copy(report.surfaceColour('grid'));
    built.parts.links.material.color.copy(report.surfaceColour('muted'));
  }

  function followColours(built, view) {
    window.matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => {
      recolour(built);
      view.render();
    });
  }

  // The view goes to paper as it stands, in the paper's colours and shape.
  function followPrinting(built, view) {
    window.addEventListener('beforeprint', () => {
      report.isOnPaper = true;
      recolour(built);
      view.drawPaper();
    });
    window.addEventListener('afterprint', () => {
      report.isOnPaper = false;
      recolour(built);
      view.resize();
    });
  }

  function showPicture() {
    byId('stage').hidden = true;
    byId('controls').hidden = true;
    byId('view-help').hidden = true;
    byId('top-view').hidden = false;
  }

  function showProblem(reason) {
    showPicture();
    const problem = byId('view-problem');
    problem.textContent =
        'The view in three dimensions is not there (' + reason + '); this is the rig from above.';
    problem.hidden = false;
  }

  function start() {
    const data = JSON.parse(byId('rig-data').textContent);
    if (data.cameras.length === 0) return 'empty';
    const stage = byId('stage');
    stage.hidden = false;
    const built = report.buildScene(data);
    const view = new report.View(stage, built);
    addScale(stage, data);
    addControls(byId('controls'), data, built, view);
    byId('controls').hidden = false;
    byId('top-view').hidden = true;
    byId('view-help').textContent = kHelp;
    byId('view-help').hidden = false;
    followColours(built, view);
    followPrinting(built, view);
    view.canvas.addEventListener('webglcontextlost', () => showProblem('the browser gave it up'));
    return 'shown';
  }

  // Opens what is closed while the page is printed.
  function openForPrinting() {
    let opened = [];
    window.addEventListener('beforeprint', () => {
      opened = [...document.querySelectorAll('details:not([open])')];
      for (const details of opened) details.open = true;
    });
    window.addEventListener('afterprint', () => {
      for (const details of opened) details.open = false;
    });
  }

  openForPrinting();
  const state = document.documentElement.dataset;
  try {
    state.view = start();
  } catch (error) {
    state.view = 'missing';
    showProblem(error.message);
  }
})();
